#include "foundation/NSFileManager.h"

#include "host/Applications.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <filesystem>

namespace {

/// Has every name in a folder looked at until one is enough; false when the folder can't be listed.
template <class IsEnough>
bool eachName(const std::string& path, bool skipsHiddenFiles, IsEnough isEnough)
{
    std::error_code error;
    const std::string folder = host::Desktop::current().session().locate(path);
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
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
