#include "foundation/PreferenceDomain.h"

#include "base/PerDesktop.h"
#include "base/PropertyList.h"
#include "foundation/NSFileHandle.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <QFile>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

namespace {

namespace fs = std::filesystem;

using Domains = std::map<std::string, std::shared_ptr<PreferenceDomain>>;

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
    return wait.wait_for(std::chrono::seconds(2)) == std::future_status::ready;
}

/// Whole, synced and at once, whatever links to it. Empty on success, else the reason.
std::string replaceFile(const std::string& file, std::string_view bytes)
{
    QSaveFile out(QFile::decodeName(file.c_str()));
    const bool isNew = !QFile::exists(out.fileName());
    // The toolkit's buffer would take a write that the disk has just half the room for as done.
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return out.errorString().toStdString();
    if (isNew)
        out.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    const auto size = static_cast<qint64>(bytes.size());
    if (out.write(bytes.data(), size) != size)
        return failure("can't write");
    return out.commit() ? std::string() : out.errorString().toStdString();
}

}

std::shared_ptr<PreferenceDomain> PreferenceDomain::named(const std::string& name)
{
    auto& domain = perDesktop<Domains>()[name];
    if (!domain)
        domain = std::make_shared<PreferenceDomain>(
            host::Desktop::current().session().preferencesFolder() + "/" + name + ".plist");
    return domain;
}

PreferenceDomain::PreferenceDomain(std::string file)
    : file_(std::move(file))
{
    load();
}

PreferenceDomain::~PreferenceDomain()
{
    if (telling_)
        RunLoop::main().cancel(*telling_);
}

void PreferenceDomain::follow(std::function<void()> told)
{
    told_ = std::move(told);
    watch_ = std::make_unique<FileWatch>(file_, [this] { refresh(); });
}

const Value* PreferenceDomain::find(std::string_view key)
{
    refresh();
    return values_.find(key);
}

void PreferenceDomain::set(const Changes& changes)
{
    for (const auto& [key, value] : changes)
        unsaved_.insert_or_assign(key, value);
    apply(unsaved_);
    const std::string reason = save();
    if (reason.empty()) {
        unsaved_.clear();
        return;
    }
    std::string keys;
    for (const auto& [key, value] : changes)
        keys += (keys.empty() ? "\"" : ", \"") + key + '"';
    NSFileHandle::writeToStandardError("vantry: setting " + keys + " is not saved in " + file_ + ": " + reason + "\n");
}

std::string PreferenceDomain::save()
{
    std::error_code ignored;
    fs::create_directories(fs::path(file_).parent_path(), ignored);
    const auto lock
        = std::make_shared<Descriptor>(::open((file_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock->isOpen())
        return failure("can't lock");
    if (!takeLock(lock))
        return "another process keeps the lock";
    if (stamp() != stamp_)
        reload();
    return store();
}

void PreferenceDomain::apply(const Changes& changes)
{
    for (const auto& [key, value] : changes) {
        if (value)
            values_.set(key, *value);
        else
            values_.erase(key);
    }
}

/// What another process wrote is looked for once a turn; outside of a turn, at every read.
void PreferenceDomain::refresh()
{
    const auto turn = RunLoop::Turn::current();
    if (turn && turn == checkedTurn_)
        return;
    checkedTurn_ = turn;
    if (stamp() != stamp_)
        reload();
}

/// Whoever follows is told in another turn: this one may be in the midst of a painting.
void PreferenceDomain::reload()
{
    const Value::Dictionary before = std::move(values_);
    load();
    if (!told_ || telling_ || values_ == before)
        return;
    telling_ = RunLoop::main().perform([this] {
        telling_.reset();
        told_();
    });
}

void PreferenceDomain::load()
{
    stamp_ = stamp();
    values_ = {};
    condition_ = Condition::missing;
    isBinary_ = false;
    if (stamp_.size >= 0)
        read();
    apply(unsaved_);
}

void PreferenceDomain::read()
{
    std::ifstream in(file_, std::ios::binary);
    const std::string bytes { std::istreambuf_iterator<char>(in), {} };
    if (!in.good() && !in.eof()) {
        condition_ = Condition::unreadable;
        return;
    }
    const auto value = PropertyList::parse(bytes);
    const auto* dictionary = value ? value->dictionary() : nullptr;
    condition_ = dictionary ? Condition::sound : Condition::damaged;
    if (!dictionary)
        return;
    values_ = *dictionary;
    isBinary_ = PropertyList::isBinary(bytes);
}

PreferenceDomain::Stamp PreferenceDomain::stamp() const
{
    struct stat status { };
    if (::stat(file_.c_str(), &status) != 0)
        return {};
    return { status.st_dev, status.st_ino, status.st_size,
        status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec };
}

std::string PreferenceDomain::store()
{
    if (condition_ == Condition::damaged || condition_ == Condition::unreadable)
        if (std::string reason = setAside(); !reason.empty())
            return reason;
    const std::string bytes = isBinary_ ? PropertyList::binary(values_) : PropertyList::xml(values_);
    if (std::string reason = replaceFile(file_, bytes); !reason.empty())
        return reason;
    stamp_ = stamp();
    condition_ = Condition::sound;
    return {};
}

/// Gives the file that couldn't be read a name that no other has, so that nothing in it is lost.
std::string PreferenceDomain::setAside()
{
    std::error_code error;
    const std::string found = fs::canonical(file_, error).string();
    int number = 1;
    const auto aside = [&] { return found + ".damaged-" + std::to_string(number); };
    while (fs::exists(fs::symlink_status(aside(), error)))
        ++number;
    if (::rename(found.c_str(), aside().c_str()) != 0)
        return failure("can't set the damaged file aside");
    stamp_ = stamp();
    condition_ = Condition::missing;
    return {};
}
