#include "base/PreferenceFile.h"

#include "base/PropertyList.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

namespace {

namespace fs = std::filesystem;

constexpr auto lockPatience = std::chrono::seconds(2);

/// A file descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }

private:
    int number_;
};

/// What a chain of links ends at, which may not exist.
fs::path linkedFile(fs::path path)
{
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int links = 0; links < mostLinks && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

/// Empty on success, else what failed and why.
std::string failure(const char* what)
{
    return std::string(what) + ": " + std::strerror(errno);
}

/// False when another process keeps the lock for longer than any write takes. Waiting in a row with the others, as no
/// second look at a time would, takes a thread, which lets the lock go again if it comes too late.
bool takeLock(const std::shared_ptr<Descriptor>& lock)
{
    if (::flock(lock->number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return true;
    const auto taken = std::make_shared<std::promise<void>>();
    auto wait = taken->get_future();
    std::thread([lock, taken] {
        while (::flock(lock->number(), LOCK_EX) != 0 && errno == EINTR) { }
        taken->set_value();
    }).detach();
    return wait.wait_for(lockPatience) == std::future_status::ready;
}

}

PreferenceFile::Stamp PreferenceFile::stamp() const
{
    struct stat status { };
    if (::stat(path_.c_str(), &status) != 0)
        return {};
    return { status.st_dev, status.st_ino, status.st_size,
        status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec };
}

PreferenceFile::Contents PreferenceFile::read() const
{
    Contents contents { stamp(), Condition::missing, false, {} };
    if (contents.stamp.size < 0)
        return contents;
    const auto bytes = readFile(path_);
    if (!bytes) {
        contents.condition = Condition::unreadable;
        return contents;
    }
    const auto value = PropertyList::parse(*bytes);
    const auto* dictionary = value ? value->dictionary() : nullptr;
    contents.condition = dictionary ? Condition::sound : Condition::damaged;
    if (dictionary) {
        contents.values = *dictionary;
        contents.isBinary = PropertyList::isBinary(*bytes);
    }
    return contents;
}

std::string PreferenceFile::change(Contents& contents, const Change& change) const
{
    return locked([&] {
        if (stamp() != contents.stamp)
            contents = read();
        change(contents);
        return write(contents);
    });
}

std::string PreferenceFile::remove() const
{
    return locked([&] {
        const bool isGone = ::unlink(path_.c_str()) == 0 || errno == ENOENT;
        return isGone ? std::string() : failure("can't remove");
    });
}

std::string PreferenceFile::locked(const std::function<std::string()>& work) const
{
    std::error_code ignored;
    fs::create_directories(fs::path(path_).parent_path(), ignored);
    const auto lock
        = std::make_shared<Descriptor>(::open((path_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock->isOpen())
        return failure("can't lock");
    if (!takeLock(lock))
        return "another process keeps the lock";
    return work();
}

std::string PreferenceFile::write(Contents& contents) const
{
    if (contents.condition == Condition::damaged || contents.condition == Condition::unreadable)
        if (std::string reason = setAside(contents); !reason.empty())
            return reason;
    const std::string bytes
        = contents.isBinary ? PropertyList::binary(contents.values) : PropertyList::xml(contents.values);
    if (std::string reason = replaceFile(path_, bytes, 0600); !reason.empty())
        return reason;
    contents.stamp = stamp();
    contents.condition = Condition::sound;
    return {};
}

/// Gives the file that couldn't be read a name that no other has, so that nothing in it is lost.
std::string PreferenceFile::setAside(Contents& contents) const
{
    std::error_code error;
    const std::string found = fs::canonical(path_, error).string();
    int number = 1;
    const auto aside = [&] { return found + ".damaged-" + std::to_string(number); };
    while (fs::exists(fs::symlink_status(aside(), error)))
        ++number;
    if (::rename(found.c_str(), aside().c_str()) != 0)
        return failure("can't set the damaged file aside");
    contents.stamp = stamp();
    contents.condition = Condition::missing;
    return {};
}

std::optional<std::string> readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    for (char part[16384]; file.read(part, sizeof part), file.gcount() > 0;)
        bytes.append(part, static_cast<std::size_t>(file.gcount()));
    return file.eof() && !file.bad() ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string replaceFile(const std::string& path, std::string_view bytes, unsigned mode)
{
    const fs::path target = linkedFile(path);
    struct stat status { };
    const int permissions = static_cast<int>(::stat(target.c_str(), &status) == 0 ? status.st_mode & 07777 : mode);
    constexpr auto flags
        = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE);
    GError* failed = nullptr;
    if (g_file_set_contents_full(
            target.c_str(), bytes.data(), static_cast<gssize>(bytes.size()), flags, permissions, &failed))
        return {};
    std::string reason = failed->message;
    g_error_free(failed);
    return reason;
}
