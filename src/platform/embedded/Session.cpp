#include "embedded/Session.h"

#include "base/PropertyList.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace embedded {

namespace {

namespace fs = std::filesystem;

/// The folders of the platform that this machine has no use for.
constexpr std::array<std::string_view, 2> ownFolders { "/Applications", "/System" };

bool isIn(const std::string& path, std::string_view folder)
{
    return path == folder || (path.starts_with(folder) && path[folder.size()] == '/');
}

}

Session::Session(std::string root, const Scenario& scenario)
    : root_(std::move(root))
    , accentColor_(scenario.accentColor)
{
    std::error_code ignored;
    fs::create_directories(preferencesFolder(), ignored);
    fs::create_directories(homeFolder(), ignored);
    makeTrash(scenario.trash);
    seedTrackpad();
    for (const auto& application : scenario.applications)
        makeBundle(application.path);
}

std::string Session::locate(const std::string& path)
{
    const bool isOwn = std::any_of(
        ownFolders.begin(), ownFolders.end(), [&](std::string_view folder) { return isIn(path, folder); });
    return isOwn ? root_ + path : path;
}

bool Session::throwAway(const std::string& path)
{
    std::error_code error;
    fs::rename(path, fs::path(homeFolder()) / ".Trash" / fs::path(path).filename(), error);
    return !error;
}

std::string Session::preferenceFile(const std::string& domain)
{
    return preferencesFolder() + "/" + domain + ".plist";
}

void Session::makeBundle(const std::string& path)
{
    std::error_code ignored;
    fs::create_directories(locate(path), ignored);
}

/// As the system has it: the gesture is on.
void Session::seedTrackpad()
{
    for (const char* domain :
        { "com.apple.AppleMultitouchTrackpad", "com.apple.driver.AppleBluetoothMultitouch.trackpad" }) {
        const Value::Dictionary gesture { { "TrackpadThreeFingerVertSwipeGesture", 2 },
            { "TrackpadFourFingerVertSwipeGesture", 2 } };
        if (!fs::exists(preferenceFile(domain)))
            std::ofstream(preferenceFile(domain), std::ios::binary) << PropertyList::xml(gesture);
    }
}

void Session::makeTrash(const std::vector<std::string>& names)
{
    const fs::path trash = homeFolder() + "/.Trash";
    std::error_code ignored;
    if (!fs::create_directories(trash, ignored))
        return;
    for (const std::string& name : names)
        std::ofstream(trash / name) << name << '\n';
}

}
