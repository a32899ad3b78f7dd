#pragma once

#include "accessibility/AXUIElement.h"
#include "foundation/NSURL.h"
#include "model/BarItem.h"
#include "system/Displays.h"

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/// Which buttons there are, in which order, and what they do. The list is made afresh each time from the system and the
/// settings; nothing fails but into an empty list or a smaller deed. Main thread.
namespace DockModel {

inline constexpr const char* finderBundleID = "com.apple.finder";

struct PinnedApp {
    /// As it was stored, not standardised.
    NSURL bundleURL;
    std::string name;
};

/// The applications pinned in the system Dock, in its order.
std::vector<PinnedApp> pinnedApps();

/// Pinned applications, those of the Dock first, then the other regular ones that run; in the user's order.
std::vector<BarItem> items();
/// What stands for an application in the settings: its bundle identifier, or its name when it has none.
std::string key(const BarItem& item);
/// The item behind the bar's own Finder button; absent while Finder doesn't run.
std::optional<BarItem> finderItem();

/// The items in the order that the user chose.
std::vector<BarItem> ordered(std::vector<BarItem> items);
/// What the bar on `display` shows, given how many buttons it has room for; without a display, what all bars together
/// could show.
std::vector<BarItem> entries(int capacity, const std::optional<DisplayInfo>& display);
/// One item per window, in the place of each application that has windows.
std::vector<BarItem> expand(const std::vector<BarItem>& items);

/// One click: raises the button's window; goes back to the previous application when this one is in front with a
/// window; else activates it.
void handleClick(const BarItem& item);
/// Brings the application forward with a window of it, or launches it.
void activate(const BarItem& item);

struct ListedElement {
    std::string title;
    AXUIElement element;
};

/// The application's windows that have a title. Costs up to a second for each call when the application hangs.
std::vector<ListedElement> windowList(const BarItem& item);
/// Brings a window of that list forward.
void raise(const AXUIElement& window, pid_t pid);
/// Opens the application anew; what that does is its own affair.
void newWindow(const BarItem& item);
void setHidden(const BarItem& item, bool hidden);
bool isHidden(const BarItem& item);
void quit(const BarItem& item);
void forceQuit(const BarItem& item);
/// Pins the application on the bar. The Dock's own list never changes.
void pin(const BarItem& item);
void unpin(const BarItem& item);

}
