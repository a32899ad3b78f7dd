#include "foundation/PreferenceDomain.h"

#include "base/PropertyList.h"
#include "base/RunLoop.h"
#include "foundation/NSFileHandle.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>

namespace {

std::map<std::string, std::shared_ptr<PreferenceDomain>>& domains()
{
    static std::map<std::string, std::shared_ptr<PreferenceDomain>> byName;
    return byName;
}

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

bool writeWhole(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Empty on success, else what failed and why.
std::string failure(const char* what)
{
    return std::string(what) + ": " + std::strerror(errno);
}

std::string replaceFile(const std::string& file, std::string_view bytes)
{
    const std::string temporary = file + ".new-" + std::to_string(::getpid());
    const auto abandon = [&](const char* what) {
        std::string reason = failure(what);
        ::unlink(temporary.c_str());
        return reason;
    };

    const Descriptor out(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!out.isOpen())
        return failure("can't make a temporary file");
    if (!writeWhole(out.number(), bytes))
        return abandon("can't write");
    if (::fsync(out.number()) != 0)
        return abandon("can't sync");
    if (::rename(temporary.c_str(), file.c_str()) != 0)
        return abandon("can't replace the old file");
    return {};
}

}

std::shared_ptr<PreferenceDomain> PreferenceDomain::named(const std::string& name)
{
    auto& domain = domains()[name];
    if (!domain)
        domain = std::make_shared<PreferenceDomain>(
            host::Desktop::current().session().preferencesFolder() + "/" + name + ".plist");
    return domain;
}

void PreferenceDomain::forgetAll()
{
    domains().clear();
}

PreferenceDomain::PreferenceDomain(std::string file)
    : file_(std::move(file))
{
}

const Value* PreferenceDomain::find(std::string_view key)
{
    refresh();
    return values_.find(key);
}

void PreferenceDomain::set(std::string_view key, std::optional<Value> value)
{
    const Descriptor lock(::open((file_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock.isOpen())
        ::flock(lock.number(), LOCK_EX);

    if (const Stamp now = stamp(); now != stamp_)
        load();
    Value::Dictionary values = values_;
    if (value)
        values.set(std::string(key), *std::move(value));
    else
        values.erase(key);

    const std::string reason = lock.isOpen() ? store(values) : failure("can't lock");
    if (!reason.empty())
        NSFileHandle::writeToStandardError(
            "vantry: setting \"" + std::string(key) + "\" is not saved in " + file_ + ": " + reason + "\n");
    values_ = std::move(values);
}

/// What another process wrote is looked for once a turn; outside of a turn, at every read.
void PreferenceDomain::refresh()
{
    const auto turn = RunLoop::Turn::current();
    if (turn && turn == checkedTurn_)
        return;
    checkedTurn_ = turn;
    if (stamp() != stamp_)
        load();
}

void PreferenceDomain::load()
{
    stamp_ = stamp();
    values_ = {};
    condition_ = Condition::missing;
    if (stamp_.size < 0)
        return;

    std::ifstream in(file_, std::ios::binary);
    const std::string bytes { std::istreambuf_iterator<char>(in), {} };
    if (!in.good() && !in.eof()) {
        condition_ = Condition::unreadable;
        return;
    }
    const auto value = PropertyList::parse(bytes);
    const auto* dictionary = value ? value->dictionary() : nullptr;
    condition_ = dictionary ? Condition::sound : Condition::damaged;
    if (dictionary)
        values_ = *dictionary;
}

PreferenceDomain::Stamp PreferenceDomain::stamp() const
{
    struct stat status { };
    if (::stat(file_.c_str(), &status) != 0)
        return {};
    return { status.st_dev, status.st_ino, status.st_size,
        status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec };
}

std::string PreferenceDomain::store(const Value::Dictionary& values)
{
    if (condition_ == Condition::damaged || condition_ == Condition::unreadable)
        if (std::string reason = setAside(); !reason.empty())
            return reason;
    if (std::string reason = replaceFile(file_, PropertyList::xml(values)); !reason.empty())
        return reason;
    stamp_ = stamp();
    condition_ = Condition::sound;
    return {};
}

/// Gives the file that couldn't be read a name that no other has, so that nothing in it is lost.
std::string PreferenceDomain::setAside() const
{
    for (int number = 1; number < 1000; ++number) {
        const std::string aside = file_ + ".damaged-" + std::to_string(number);
        if (::link(file_.c_str(), aside.c_str()) == 0)
            return {};
        if (errno != EEXIST)
            return failure("can't set the damaged file aside");
    }
    return "too many damaged files were set aside";
}
