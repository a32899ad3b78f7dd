#include "foundation/PreferenceDomain.h"
#include "base/PropertyList.h"
#include "base/RunLoop.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

class PreferenceDomainTest : public testing::Test {
protected:
    PreferenceDomainTest()
    {
        std::string pattern = (fs::temp_directory_path() / "vantry-preferences-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        file = folder / "domain.plist";
    }
    ~PreferenceDomainTest() override
    {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }

    std::string content() const { return contentOf(file); }
    static std::string contentOf(const fs::path& path)
    {
        std::ifstream in(path, std::ios::binary);
        return { std::istreambuf_iterator<char>(in), {} };
    }
    void overwrite(const std::string& bytes) const { std::ofstream(file, std::ios::binary) << bytes; }
    PreferenceDomain domain() const { return PreferenceDomain(file.string()); }

    fs::path folder;
    fs::path file;
};

TEST_F(PreferenceDomainTest, AWriteKeepsWhatAnotherProcessWroteMeanwhile)
{
    PreferenceDomain first = domain();
    PreferenceDomain second = domain();
    EXPECT_FALSE(second.find("a"));
    first.set("a", Value(0.82));
    second.set("b", Value(2));
    first.set("c", Value(3));
    EXPECT_EQ(second.find("a")->number(), 0.82);
    for (const char* key : { "a", "b", "c" })
        EXPECT_TRUE(domain().find(key)) << key;
    second.set("a", std::nullopt);
    EXPECT_FALSE(first.find("a"));
}

TEST_F(PreferenceDomainTest, WithinATurnTheStoreHoldsStill)
{
    PreferenceDomain writer = domain();
    PreferenceDomain reader = domain();
    writer.set("key", Value("old"));
    {
        const RunLoop::Turn turn;
        EXPECT_EQ(*reader.find("key")->string(), "old");
        writer.set("key", Value("new"));
        EXPECT_EQ(*reader.find("key")->string(), "old");
    }
    const RunLoop::Turn next;
    EXPECT_EQ(*reader.find("key")->string(), "new");
}

TEST_F(PreferenceDomainTest, ProcessesThatWriteAtOnceLoseNothing)
{
    constexpr int processes = 4;
    constexpr int keys = 20;
    for (int process = 0; process < processes; ++process) {
        if (::fork() != 0)
            continue;
        PreferenceDomain own = domain();
        for (int key = 0; key < keys; ++key)
            own.set(std::to_string(process) + "-" + std::to_string(key), Value(key));
        ::_exit(0);
    }
    while (::wait(nullptr) > 0) { }
    const auto written = PropertyList::parse(content());
    ASSERT_TRUE(written);
    EXPECT_EQ(written->dictionary()->size(), std::size_t { processes * keys });
}

TEST_F(PreferenceDomainTest, AFileThatCannotBeParsedIsSetAsideBeforeAnythingIsWritten)
{
    const std::string damaged = "<plist><dict><key>precious</key><string>half a va";
    for (const char* aside : { "domain.plist.damaged-1", "domain.plist.damaged-2" }) {
        overwrite(damaged);
        PreferenceDomain store = domain();
        EXPECT_FALSE(store.find("precious"));
        EXPECT_EQ(content(), damaged) << "reading must change nothing";
        store.set("key", Value(1));
        EXPECT_EQ(contentOf(folder / aside), damaged);
        EXPECT_EQ(domain().find("key")->integer(), 1);
    }
}

TEST_F(PreferenceDomainTest, AFullDiskLeavesTheOldFileWholeAndLogsOneLine)
{
    PreferenceDomain store = domain();
    store.set("key", Value("old"));
    const std::string before = content();

    // A limit on the size of files stands in for the full disk: the write fails half-way.
    ::signal(SIGXFSZ, SIG_IGN);
    struct rlimit old { };
    ::getrlimit(RLIMIT_FSIZE, &old);
    const struct rlimit small {
        100, old.rlim_max
    };
    ::setrlimit(RLIMIT_FSIZE, &small);
    std::string reason;
    {
        // The captured line must not meet the limit itself.
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const int saved = ::dup(STDERR_FILENO);
        ::dup2(pipe[1], STDERR_FILENO);
        store.set("key", Value("new"));
        ::dup2(saved, STDERR_FILENO);
        char line[1000];
        const ssize_t length = ::read(pipe[0], line, sizeof line);
        reason.assign(line, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        for (const int end : { pipe[0], pipe[1], saved })
            ::close(end);
    }
    ::setrlimit(RLIMIT_FSIZE, &old);

    EXPECT_EQ(content(), before);
    EXPECT_EQ(*store.find("key")->string(), "new") << "this process goes on with the new value";
    EXPECT_EQ(std::count(reason.begin(), reason.end(), '\n'), 1) << reason;
    EXPECT_NE(reason.find("\"key\" is not saved"), std::string::npos) << reason;
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_EQ(entry.path().string().find(".new-"), std::string::npos) << "no temporary file stays behind";
}

}
