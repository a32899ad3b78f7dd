#include "foundation/NSFileManager.h"

#include "host/Applications.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <filesystem>

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
    std::error_code error;
    std::vector<std::string> names;
    const std::string folder = host::Desktop::current().session().locate(path);
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (!skipsHiddenFiles || name.front() != '.')
            names.push_back(std::move(name));
    }
    if (error)
        return std::nullopt;
    return names;
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
