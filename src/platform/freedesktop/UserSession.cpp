#include "freedesktop/UserSession.h"

#include "base/PreferenceFile.h"
#include "freedesktop/LaunchContext.h"
#include "freedesktop/PanelRecord.h"
#include "freedesktop/Scheme.h"
#include "freedesktop/UserFolders.h"

#include <filesystem>

namespace freedesktop {
namespace {

/// The Dock's list as it is on this desktop, where no Dock runs: just the list of all applications.
Value firstDock()
{
    const Value::Dictionary file { { "_CFURLString", "file:///System/Applications/Apps.app/" },
        { "_CFURLStringType", 15 } };
    const Value::Dictionary tile { { "file-label", "Apps" }, { "file-data", file } };
    return Value::Dictionary { { "persistent-apps", Value::Array { Value::Dictionary { { "tile-data", tile } } } } };
}

Value trackpad()
{
    return Value::Dictionary { { "TrackpadThreeFingerVertSwipeGesture", 2 },
        { "TrackpadFourFingerVertSwipeGesture", 2 } };
}

constexpr const char* dockDomain = "com.apple.dock";
constexpr const char* trackpadDomains[]
    = { "com.apple.AppleMultitouchTrackpad", "com.apple.driver.AppleBluetoothMultitouch.trackpad" };

/// What the system's own programs would have written for a new user.
void seed(const std::string& domain, const Value& values)
{
    const PreferenceFile file(freedesktop::preferencesFolder() + '/' + domain + ".plist");
    if (file.stamp() != PreferenceFile::Stamp())
        return;
    PreferenceFile::Contents contents;
    file.change(contents, [&](PreferenceFile::Contents& present) {
        if (present.condition == PreferenceFile::Condition::missing)
            present.values = *values.dictionary();
    });
}

}

UserSession::UserSession(LastingBus& bus)
    : appearance_(bus)
{
    appearance_.onAccentColor = [this] {
        if (onAccentColorChange)
            onAccentColorChange();
    };
    appearance_.onScheme = [this] { Scheme::follow(appearance_.prefersDark()); };
}

std::string UserSession::preferencesFolder()
{
    if (!preferencesFolder_.empty())
        return preferencesFolder_;
    preferencesFolder_ = freedesktop::preferencesFolder();
    std::error_code ignored;
    std::filesystem::create_directories(preferencesFolder_, ignored);
    seed(dockDomain, firstDock());
    for (const char* domain : trackpadDomains)
        seed(domain, trackpad());
    return preferencesFolder_;
}

std::string UserSession::homeFolder()
{
    return freedesktop::homeFolder();
}

std::string UserSession::locate(const std::string& path)
{
    return freedesktop::locate(path);
}

/// A panel that hasn't been given back keeps what tells how it was.
void UserSession::removeStandIns()
{
    namespace fs = std::filesystem;
    const fs::path preferences = freedesktop::preferencesFolder();
    std::error_code ignored;
    const auto remove = [&](const char* domain) {
        fs::remove(preferences / (std::string(domain) + ".plist"), ignored);
        fs::remove(preferences / (std::string(domain) + ".plist.lock"), ignored);
    };
    for (const char* domain : trackpadDomains)
        remove(domain);
    fs::remove(preferences / "com.merrowen.vantry.plist.lock", ignored);
    if (!ChangedPanel::read()) {
        remove(dockDomain);
        fs::remove(preferences / "com.merrowen.vantry.panel.plist.lock", ignored);
    }
    for (const fs::path& folder :
        { preferences, preferences.parent_path() / "LaunchAgents", preferences.parent_path() })
        fs::remove(folder, ignored); // If it is empty.
}

bool UserSession::throwAway(const std::string& path)
{
    const Owned<GFile> file(g_file_new_for_path(path.c_str()));
    return g_file_trash(file.get(), nullptr, nullptr);
}

}
