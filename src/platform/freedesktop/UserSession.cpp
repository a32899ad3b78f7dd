#include "freedesktop/UserSession.h"

#include "base/PropertyList.h"
#include "freedesktop/LaunchContext.h"
#include "freedesktop/UserFolders.h"

#include <filesystem>
#include <fstream>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

/// The Dock's list as it is on this desktop, where no Dock runs: just the list of all applications.
Value firstDock()
{
    const Value::Dictionary file { { "_CFURLString", "file:///System/Applications/Apps.app/" },
        { "_CFURLStringType", 15 } };
    const Value::Dictionary tile { { "file-label", "Apps" }, { "file-data", file } };
    return Value::Dictionary { { "persistent-apps", Value::Array { Value::Dictionary { { "tile-data", tile } } } } };
}

void seedDock(const fs::path& folder)
{
    const fs::path file = folder / "com.apple.dock.plist";
    std::error_code error;
    if (!fs::exists(file, error))
        std::ofstream(file, std::ios::binary) << PropertyList::xml(firstDock());
}

}

void UserSession::connect()
{
    accent_.onChange = [this] {
        if (onAccentColorChange)
            onAccentColorChange();
    };
    accent_.connect();
}

std::string UserSession::preferencesFolder()
{
    if (!preferencesFolder_.empty())
        return preferencesFolder_;
    const std::string folder = configFolder() + "/vantry/Preferences";
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error)
        seedDock(folder);
    return preferencesFolder_ = folder;
}

std::string UserSession::homeFolder()
{
    return freedesktop::homeFolder();
}

std::string UserSession::locate(const std::string& path)
{
    const std::string trash = freedesktop::homeFolder() + "/.Trash";
    if (path == trash || path.starts_with(trash + '/'))
        return trashFolder() + path.substr(trash.size());
    return path;
}

bool UserSession::throwAway(const std::string& path)
{
    const Owned<GFile> file(g_file_new_for_path(path.c_str()));
    return g_file_trash(file.get(), nullptr, nullptr);
}

}
