#include "foundation/PreferenceDomain.h"
#include "base/PropertyList.h"
#include "base/RunLoop.h"
#include "support/ManualClock.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

namespace {

namespace fs = std::filesystem;

class PreferenceDomainTest : public testing::Test {
protected:
    PreferenceDomainTest()
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(&clock);
        std::string pattern = (fs::temp_directory_path() / "vantry-preferences-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        file = folder / "domain.plist";
    }
    ~PreferenceDomainTest() override
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(nullptr);
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

    /// What a write says on standard error, which is a pipe because files may be limited.
    static std::string said(const std::function<void()>& write)
    {
        int pipe[2];
        EXPECT_EQ(::pipe(pipe), 0);
        const int saved = ::dup(STDERR_FILENO);
        ::dup2(pipe[1], STDERR_FILENO);
        ::close(pipe[1]);
        write();
        ::dup2(saved, STDERR_FILENO);
        ::close(saved);
        char line[1000];
        const ssize_t length = ::read(pipe[0], line, sizeof line);
        ::close(pipe[0]);
        return { line, static_cast<std::size_t>(std::max<ssize_t>(length, 0)) };
    }

    /// How often a follower was told since the last question.
    int news()
    {
        clock.advance(0);
        return std::exchange(told, 0);
    }

    ManualClock clock;
    int told = 0;
    fs::path folder;
    fs::path file;
};

TEST(PropertyListTest, WhatIsNoPropertyListGivesNothing)
{
    const std::string sound = PropertyList::xml(Value::Dictionary { { "key", "value" } });
    for (const std::string& bytes : { std::string(), std::string("{"), std::string("bplist00"), std::string(64, '\0'),
             sound.substr(0, sound.size() / 2) })
        EXPECT_FALSE(PropertyList::parse(bytes)) << bytes;
}

TEST_F(PreferenceDomainTest, ProcessesThatWriteAtOnceLoseNothing)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer doesn't follow processes that are forked from threads";
#endif
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

TEST_F(PreferenceDomainTest, WhatCannotBeSavedIsToldOnceHoldsAndGoesIntoTheNextWrite)
{
    const fs::path place = folder / "in" / "a folder";
    file = place / "domain.plist";
    rlimit limit {};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, SIG_IGN);
    int lock = -1;
    const struct {
        const char* what;
        std::function<void()> spoil;
        std::function<void()> repair;
        bool isFileThere = true;
    } cases[] {
        // A limit on the size of files: the write fails half-way.
        { "a full disk",
            [&] {
                const rlimit small { 100, limit.rlim_max };
                ::setrlimit(RLIMIT_FSIZE, &small);
            },
            [&] { ::setrlimit(RLIMIT_FSIZE, &limit); } },
        { "another process keeps the lock",
            [&] {
                lock = ::open((file.string() + ".lock").c_str(), O_RDWR | O_CLOEXEC);
                ASSERT_EQ(::flock(lock, LOCK_EX), 0);
            },
            [&] { ::close(lock); } },
        { "no folder", [&] { fs::remove_all(folder / "in"), std::ofstream(folder / "in") << "no folder"; },
            [&] { fs::remove(folder / "in"); }, false },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        PreferenceDomain store = domain();
        store.set({ { "a", Value(1) }, { "b", Value(1) }, { "c", std::nullopt } });
        const std::string before = content();
        test.spoil();
        const std::string reason = said([&] { store.set({ { "a", Value(2) }, { "b", Value(3) } }); });
        EXPECT_EQ(content(), test.isFileThere ? before : "");
        EXPECT_EQ(store.find("a")->integer(), 2) << "this process goes on with the new value";
        test.repair();
        EXPECT_EQ(std::count(reason.begin(), reason.end(), '\n'), 1) << reason;
        EXPECT_NE(reason.find("\"a\", \"b\" is not saved"), std::string::npos) << reason;
        if (test.isFileThere) {
            EXPECT_EQ(std::distance(fs::directory_iterator(place), {}), 2) << "no temporary file stays behind";
        }

        store.set({ { "a", std::nullopt }, { "c", Value(4) } });
        EXPECT_FALSE(domain().find("a"));
        EXPECT_EQ(domain().find("b")->integer(), 3);
        EXPECT_EQ(domain().find("c")->integer(), 4);
    }
}

TEST_F(PreferenceDomainTest, ALinkStaysALinkAndTheFileKeepsItsPermissions)
{
    fs::create_directory(folder / "elsewhere");
    const fs::path target = folder / "elsewhere" / "kept.plist";
    fs::create_symlink("elsewhere/kept.plist", file);
    for (const char* content : { "", "<plist>damaged" }) {
        std::ofstream(target) << content;
        fs::permissions(target, fs::perms(0640));
        domain().set("key", Value(1));
        domain().set("other", Value(2));
        EXPECT_TRUE(fs::is_symlink(file));
        EXPECT_EQ(PropertyList::parse(contentOf(target))->dictionary()->size(), 2u);
        fs::permissions(target, fs::perms(0640));
        domain().set("other", Value(3));
        EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    }
    EXPECT_EQ(contentOf(target.string() + ".damaged-2"), "<plist>damaged");
}

/// Another program's file, in each of the two formats; what its first argument asks for: to be written, or compared
/// with what is expected after "own" was set and "gone" was removed.
constexpr const char* anotherProgram = R"(
import datetime, os, plistlib, sys
date = datetime.datetime
binary = sys.argv[2] == "binary"
kept = {
    "integers": [0, -1, 2**31, 2**63 - 1, -2**63, 2**63, 2**64 - 1],
    "reals": [0.82, 3.0, 1 / 3, 1e300, 5e-324, -2.5, float("inf"), float("-inf")],
    "dates": [date(y, 3, 4, 5, 6, 7) for y in (1583, 1900, 1969, 1971, 2000, 2037, 2039, 2069, 2070, 4002, 9999)],
    "texts": ["", "  spaces \n\t", "<&>\"'", "\u00fc\u6f22\U0001f600", "x" * 70000],
    "data": [b"", bytes(range(256))], "booleans": [True, False], "": {"": [[], {}]},
}
if binary:
    kept["only binary"] = [plistlib.UID(5), date(2020, 1, 2, 3, 4, 5, 123456), date(1990, 1, 2, 3, 4, 5, 654321), "a\rb\1"]
if sys.argv[1] == "write":
    with open(sys.argv[3], "wb") as file:
        plistlib.dump({**kept, "gone": 1}, file, fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML)
else:
    with open(sys.argv[3], "rb") as file:
        after = plistlib.load(file)
    wrong = [key for key in {**kept, **after} if repr(after.get(key)) != repr({**kept, "own": 0.82}.get(key))]
    sys.exit("not as it was: " + ", ".join(f"{key}: {after.get(key)!r}" for key in wrong) if wrong else 0)
)";

TEST_F(PreferenceDomainTest, ARewriteKeepsAllThatAnotherProgramWrote)
{
    std::ofstream(folder / "another.py") << anotherProgram;
    const auto run = [&](const std::string& arguments) {
        const auto quoted = [](const fs::path& path) { return " '" + path.string() + "'"; };
        return std::system(
            ("/usr/bin/python3" + quoted(folder / "another.py") + " " + arguments + quoted(file)).c_str());
    };
    const auto rewritten = [&](const std::string& format) {
        ASSERT_EQ(run("write " + format), 0);
        domain().set({ { "own", Value(0.82) }, { "gone", std::nullopt } });
        EXPECT_EQ(run("compare " + format), 0) << format;
        EXPECT_EQ(PropertyList::isBinary(content()), format == "binary");
    };
    rewritten("xml");
    rewritten("binary");
}

TEST_F(PreferenceDomainTest, TheFileIsWatchedThroughAllThatCanHappenToIt)
{
    const fs::path place = folder / "not" / "yet";
    file = place / "domain.plist";
    PreferenceDomain store = domain();
    store.follow([this] { ++told; });

    const auto list = [](int number) { return PropertyList::xml(Value::Dictionary { { "key", number } }); };
    const auto replace = [&](int number) {
        std::ofstream(folder / "temporary") << list(number);
        fs::rename(folder / "temporary", file);
    };
    const struct {
        const char* what;
        std::function<void()> happens;
        std::optional<int> value;
    } cases[] {
        { "the folder is made", [&] { fs::create_directories(place); }, {} },
        { "the file is made", [&] { overwrite(list(1)); }, 1 },
        { "it is replaced", [&] { replace(2); }, 2 },
        { "it is rewritten in place", [&] { overwrite(list(3)); }, 3 },
        { "it is deleted", [&] { fs::remove(file); }, {} },
        { "it is made anew", [&] { replace(4); }, 4 },
        { "its folder is removed", [&] { fs::remove_all(folder / "not"); }, {} },
        { "all of it is made again", [&] { fs::create_directories(place), replace(5); }, 5 },
        { "a link takes its place",
            [&] {
                std::ofstream(folder / "target") << list(6);
                fs::remove(file);
                fs::create_symlink(folder / "target", file);
            },
            6 },
        { "what it links to is rewritten", [&] { std::ofstream(folder / "target") << list(7); }, 7 },
    };
    std::optional<int> before;
    for (const auto& test : cases) {
        test.happens();
        QCoreApplication::processEvents();
        clock.advance(0.1);
        EXPECT_EQ(news(), test.value == before ? 0 : 1) << test.what;
        const Value* value = store.find("key");
        EXPECT_EQ(value ? value->integer<int>() : std::nullopt, test.value) << test.what;
        before = test.value;
    }
}

}
