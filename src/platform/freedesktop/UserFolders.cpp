#include "freedesktop/UserFolders.h"

#include <glib.h>

#include <cstdlib>
#include <sstream>
#include <utility>

namespace freedesktop {
namespace {

/// The value of a variable that must hold an absolute path; else `otherwise`.
std::string pathFrom(const char* variable, const std::string& otherwise)
{
    const char* value = std::getenv(variable);
    return value && *value == '/' ? value : otherwise;
}

}

std::string homeFolder()
{
    return pathFrom("HOME", g_get_home_dir());
}

std::string configFolder()
{
    return pathFrom("XDG_CONFIG_HOME", homeFolder() + "/.config");
}

std::string dataFolder()
{
    return pathFrom("XDG_DATA_HOME", homeFolder() + "/.local/share");
}

std::string preferencesFolder()
{
    return configFolder() + "/vantry/Preferences";
}

std::string locate(const std::string& path)
{
    const std::pair<const char*, std::string> places[] = {
        { "/.Trash", trashFolder() },
        { "/Library/Application Support", dataFolder() },
        { "/Library/LaunchAgents", configFolder() + "/vantry/LaunchAgents" },
    };
    for (const auto& [name, place] : places) {
        const std::string folder = homeFolder() + name;
        if (path == folder || path.starts_with(folder + '/'))
            return place + path.substr(folder.size());
    }
    return path;
}

std::string trashFolder()
{
    return dataFolder() + "/Trash/files";
}

std::vector<std::string> dataFolders()
{
    std::vector<std::string> folders { dataFolder() };
    const char* variable = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(variable && *variable ? variable : "/usr/local/share:/usr/share");
    for (std::string folder; std::getline(list, folder, ':');) {
        if (folder.starts_with('/'))
            folders.push_back(folder);
    }
    return folders;
}

}
