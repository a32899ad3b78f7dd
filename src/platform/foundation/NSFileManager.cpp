#include "foundation/NSFileManager.h"

#include "base/PreferenceFile.h"
#include "host/Applications.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <filesystem>
#include <iterator>

namespace {

namespace fs = std::filesystem;

fs::path located(const std::string& path)
{
    return host::Desktop::current().session().locate(path);
}

/// Runs what sets the error; absent when it sets none. `what` begins the reason.
template <class Work>
std::optional<NSError> attempt(const std::string& what, Work work)
{
    std::error_code error;
    work(error);
    return error ? std::optional(NSError { what + ": " + error.message() }) : std::nullopt;
}

/// Has every name in a folder looked at until one is enough; false when the folder can't be listed.
template <class IsEnough>
bool eachName(const std::string& path, bool skipsHiddenFiles, IsEnough isEnough)
{
    std::error_code error;
    const fs::path folder = located(path);
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if ((!skipsHiddenFiles || name.front() != '.') && isEnough(std::move(name)))
            break;
    }
    return !error;
}

}

NSFileManager& NSFileManager::defaultManager()
{
    static NSFileManager manager;
    return manager;
}

std::optional<std::vector<std::string>> NSFileManager::contentsOfDirectory(
    const std::string& path, bool skipsHiddenFiles)
{
    if (auto bundles = host::Desktop::current().applications().bundles(path))
        return bundles;
    std::vector<std::string> names;
    const bool isListed = eachName(path, skipsHiddenFiles, [&](std::string name) {
        names.push_back(std::move(name));
        return false;
    });
    return isListed ? std::optional(std::move(names)) : std::nullopt;
}

bool NSFileManager::hasContents(const std::string& path, bool skipsHiddenFiles)
{
    bool found = false;
    eachName(path, skipsHiddenFiles, [&](const std::string&) { return found = true; });
    return found;
}

bool NSFileManager::fileExists(const std::string& path)
{
    std::error_code error;
    return fs::exists(located(path), error);
}

std::optional<NSError> NSFileManager::createDirectory(const std::string& path)
{
    return attempt(path + " can't be made", [&](auto& error) { fs::create_directories(located(path), error); });
}

std::optional<NSError> NSFileManager::copyItem(const std::string& path, const std::string& target)
{
    if (fileExists(target))
        return NSError { target + " exists already" };
    const auto content = contentsOfFile(path);
    return content ? writeAtomically(*content, target) : NSError { path + " can't be read" };
}

std::optional<NSError> NSFileManager::moveItem(const std::string& path, const std::string& target)
{
    return attempt(path + " can't be moved to " + target, [&](auto& error) {
        if (fs::exists(fs::symlink_status(located(target), error)))
            error = std::make_error_code(std::errc::file_exists);
        else
            fs::rename(located(path), located(target), error);
    });
}

std::optional<NSError> NSFileManager::removeItem(const std::string& path)
{
    return attempt(path + " can't be removed", [&](auto& error) {
        if (fs::remove_all(located(path), error) == 0 && !error)
            error = std::make_error_code(std::errc::no_such_file_or_directory);
    });
}

std::optional<NSError> NSFileManager::setPosixPermissions(const std::string& path, unsigned permissions)
{
    return attempt(path + " can't be given its permissions",
        [&](auto& error) { fs::permissions(located(path), static_cast<fs::perms>(permissions), error); });
}

std::optional<std::string> NSFileManager::contentsOfFile(const std::string& path)
{
    return readFile(located(path));
}

std::optional<NSError> NSFileManager::writeAtomically(const std::string& text, const std::string& path)
{
    const std::string reason = replaceFile(located(path).string(), text, 0644);
    return reason.empty() ? std::nullopt : std::optional(NSError { path + " can't be written: " + reason });
}

std::string NSFileManager::applicationSupportDirectory()
{
    return located(NSHomeDirectory() + "/Library/Application Support").string();
}

bool NSFileManager::trashItemAtURL(const NSURL& url)
{
    host::Session& session = host::Desktop::current().session();
    return session.throwAway(session.locate(url.path()));
}

std::string NSFileManager::displayNameAtPath(const std::string& path)
{
    if (auto name = host::Desktop::current().applications().displayName(path))
        return *std::move(name);
    return path.substr(path.rfind('/') + 1);
}

std::string NSHomeDirectory()
{
    return host::Desktop::current().session().homeFolder();
}
