#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace host {

/// The user's session: where things are kept, and the user's choices of look. Main thread.
class Session {
public:
    virtual ~Session() = default;

    /// The folder with one property-list file a preference domain. Made on first use.
    virtual std::string preferencesFolder() = 0;
    /// The user's home folder, as the program is to see it.
    virtual std::string homeFolder() = 0;
    /// Where a path of the platform ("HOME/.Trash") lies on this machine; other paths come back as they are.
    virtual std::string locate(const std::string& path) = 0;
    /// Takes away what lies in the user's folders only because this program runs here: the system's domains where there
    /// is no such system, locks, folders that are empty. For the end of the last run.
    virtual void removeStandIns() { }
    /// Moves a file or folder to the user's Trash. The full path of this machine. False when it stays where it is.
    virtual bool throwAway(const std::string& /*path*/) { return false; }
    /// The user's accent colour as 0xRRGGBB; absent when the desktop has none.
    virtual std::optional<std::uint32_t> accentColor() { return std::nullopt; }
    /// Set by the layer: the user has chosen another.
    std::function<void()> onAccentColorChange;
};

}
