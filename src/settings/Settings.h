#pragma once

#include "settings/Choices.h"
#include "settings/Setting.h"

#include <vector>

/// What the user chose: `Settings::barEdge()` reads, `Settings::barEdge.set(...)` writes and tells the whole program
/// through `Settings::didChange`. What is stored is never trusted: a missing or foreign value reads as the default that
/// stands here. Main thread.
namespace Settings {

inline constexpr Setting<bool> showLauncher { "showLauncher", true };
inline constexpr Setting<bool> showSearch { "showSearch", true };
inline constexpr Setting<bool> showDesktopButton { "showDesktopButton", true };
inline constexpr Setting<bool> showFinderButton { "showFinderButton", true };
inline constexpr Setting<bool> showTrash { "showTrash", true };

inline constexpr Setting<BarStyle> barStyle { "barStyle", BarStyle::solid };
inline constexpr Setting<BarSize> barSize { "barSize", BarSize::large };
inline constexpr Setting<BarEdge> barEdge { "barEdge", BarEdge::bottom };
inline constexpr Setting<bool> floatingBar { "floatingBar", false };
inline constexpr Setting<bool> barVisible { "barVisible", true };
/// Six hexadecimal digits, unchecked.
inline constexpr Setting<std::string> barTintHex { "barTintHex", "1A1C22" };
/// Six hexadecimal digits, unchecked; empty follows the system's accent colour.
inline constexpr Setting<std::string> accentHex { "accentHex", "" };

inline constexpr Setting<MultiDisplayMode> multiDisplayMode { "multiDisplayMode", MultiDisplayMode::perScreen };
inline constexpr Setting<WindowGrouping> grouping { "grouping", WindowGrouping::always };
inline constexpr Setting<bool> currentSpaceOnly { "currentSpaceOnly", false };
inline constexpr Setting<AppOrder> appOrder { "appOrder", AppOrder::dock };
/// Item keys in the user's order.
inline constexpr Setting<Strings> manualOrder { "manualOrder" };
/// Item keys of applications in the Dock that the bar leaves out.
inline constexpr Setting<Strings> hiddenKeys { "hiddenKeys" };
/// Standardised paths of the applications pinned on the bar itself, and the names to show for them.
inline constexpr Setting<Strings> extraPinnedPaths { "extraPinnedPaths" };
inline constexpr Setting<StringMap> pinnedNames { "pinnedNames" };

inline constexpr Setting<bool> showMenuBarIcon { "showMenuBarIcon", true };
inline constexpr Setting<bool> showWindowPips { "showWindowPips", true };
inline constexpr Setting<bool> showBadges { "showBadges", true };
inline constexpr Setting<bool> showWindowPreviews { "showWindowPreviews", true };
inline constexpr Setting<bool> showTooltips { "showTooltips", true };
inline constexpr Setting<bool> enableShortcuts { "enableShortcuts", true };
inline constexpr Setting<bool> autoFitWindows { "autoFitWindows", true };

/// Whether the system Dock is kept behind the bar.
inline constexpr Setting<bool> manageDock { "manageDock", true };
/// Whether the Dock's applications were moved onto the bar.
inline constexpr Setting<bool> dockMigrated { "dockMigrated", false };
/// Whether the system's settings are given back at quit.
inline constexpr Setting<bool> restoreOnQuit { "restoreOnQuit", true };

/// Kept between 0.5 and 1.0, on both ways.
inline constexpr struct BarOpacity {
    using Type = double;
    double operator()() const;
    void set(double opacity) const;
} barOpacity;

/// From the leading edge. What is read always holds every component: those that the stored order lacks follow at its
/// end, and an order that names none is the default one.
inline constexpr struct ComponentOrder {
    using Type = std::vector<BarComponent>;
    std::vector<BarComponent> operator()() const;
    void set(const std::vector<BarComponent>& order) const;
} componentOrder;

/// Has what another program writes into the store be told as `didChange` too. Call at launch.
void followOtherPrograms();

/// The application buttons are always visible, and can't be made otherwise.
bool isVisible(BarComponent component);
void setVisible(BarComponent component, bool visible);

}
