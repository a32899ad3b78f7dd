#pragma once

#include "freedesktop/DesktopEntries.h"
#include "freedesktop/Icons.h"
#include "freedesktop/LaunchNotifier.h"
#include "host/Applications.h"

namespace freedesktop {

/// Installed applications as bundles, each a desktop entry.
class InstalledApplications final : public host::Applications {
public:
    using Entry = DesktopEntries::Handle;

    explicit InstalledApplications(LaunchNotifier& notifier)
        : notifier_(notifier)
    {
    }

    std::optional<std::string> identifier(const std::string& path) override;
    std::optional<std::string> displayName(const std::string& path) override;
    std::shared_ptr<const IconSource> icon(const std::string& path) override;
    std::optional<std::vector<std::string>> bundles(const std::string& folder) override;
    bool open(const std::string& path) override;
    bool openAnother(const std::string& path) override;
    bool openURL(const std::string& url) override;
    bool reveal(const std::string& url) override;

    /// Set by the desktop, which knows of windows: brings forward what runs with a window as that bundle or by that
    /// identifier. False where nothing does.
    std::function<bool(const std::string& path, const std::string& identifier)> bringForward;

    DesktopEntries& entries() { return entries_; }
    Icons& icons() { return icons_; }
    /// The entry's id, or "com.apple.finder" for the application that opens folders.
    std::string identifierOf(const Entry& entry);
    /// The same for an entry that was found by a window: that of the application that opens folders may only start it.
    std::string identifierOfWindows(const Entry& entry);
    std::shared_ptr<const IconSource> iconOf(const Entry& entry);
    /// Null when no application opens folders.
    Entry folderHandler();

private:
    bool openHome();

    LaunchNotifier& notifier_;
    DesktopEntries entries_;
    Icons icons_;
    /// The id of the folder handler's entry; empty when there is none.
    std::optional<std::string> folderHandlerId_;
};

/// The identifier of the application that opens folders.
inline constexpr const char* finderIdentifier = "com.apple.finder";

}
