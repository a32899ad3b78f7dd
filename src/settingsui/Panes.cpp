#include "settingsui/Panes.h"

#include "appkit/NSAlert.h"
#include "dock/DockPrefs.h"
#include "dock/LoginItem.h"
#include "dock/Uninstaller.h"
#include "settingsui/SettingsStore.h"
#include "system/WindowIndex.h"

#include <cmath>
#include <string>
#include <utility>

using namespace forms;

namespace {

// A row is known by its label.

Row row(Control control)
{
    std::string label = std::visit(
        [](const auto& kind) -> std::string {
            if constexpr (requires { kind.label; })
                return kind.label;
            else if constexpr (requires { kind.title; })
                return kind.title;
            else if constexpr (requires { kind.text; })
                return kind.text;
            else
                return kind.name;
        },
        control);
    return { std::move(label), { std::move(control) } };
}

Row toggle(const char* label, const Binding<bool>& binding)
{
    return row(Toggle { label, binding.get(), binding.set });
}

template <class Enum>
Row picker(const char* label, const Binding<Enum>& binding, bool isEnabled = true)
{
    Picker picker { label, {}, static_cast<std::size_t>(binding.get()),
        [set = binding.set](std::size_t index) { set(static_cast<Enum>(index)); }, isEnabled };
    for (const Enum each : allCases<Enum>())
        picker.options.emplace_back(title(each));
    return row(std::move(picker));
}

Row color(const char* label, const Binding<NSColor>& binding)
{
    return row(ColorPicker { label, binding.get(), binding.set });
}

/// From half to whole.
Row opacity(const char* label, const Binding<double>& binding)
{
    const double value = binding.get();
    return row(Slider { label, value, 0.5, 1.0, binding.set, std::to_string(std::lround(value * 100)) + "%", 160, 44 });
}

/// The same row, whatever its title is now.
Row button(const char* id, std::string title, std::function<void()> action, bool isEnabled = true)
{
    return { id, { Button { std::move(title), std::move(action), isEnabled } } };
}

void confirm(const NSAlert& alert, std::function<void()> action)
{
    alert.begin([action = std::move(action)](int response) {
        if (response == NSAlertFirstButtonReturn)
            action();
    });
}

}

Form AppearancePane::body() const
{
    Section highlight { "Highlight", { toggle("Use the system accent colour", store.usesSystemAccent()) },
        "Used for the bar under the app you are currently in, and the ring around the search box while you type." };
    if (!store.usesSystemAccent().get())
        highlight.rows.push_back(color("Accent", store.accentColour()));
    return { {
        { "",
            { picker("Position", store.binding(Settings::barEdge)),
                picker("Bar size", store.binding(Settings::barSize)) },
            "Everything on the bar reflows, and managed windows resize to match." },
        { "Bar",
            { picker("Style", store.binding(Settings::barStyle)), color("Colour", store.barTint()),
                opacity("Opacity", store.binding(Settings::barOpacity)),
                toggle("Float above the screen edge", store.binding(Settings::floatingBar)) },
            "Translucent picks up a blur of whatever is behind the bar. Solid is the only style that reliably hides "
            "the "
            "Dock sliding out underneath, which is why it is the default." },
        std::move(highlight),
        { "Indicators",
            { toggle("Window-count pips", store.binding(Settings::showWindowPips)),
                toggle("Notification badges", store.binding(Settings::showBadges)),
                toggle("Tooltips on hover", store.binding(Settings::showTooltips)),
                toggle("Window previews on hover", store.binding(Settings::showWindowPreviews)) },
            "Pips show stacked dashes when an app has several windows. Badges are read from the Dock's own counts.\n\n"
            "Previews need Screen Recording; without it, hovering falls back to a plain tooltip." },
    } };
}

Form ButtonsPane::body() const
{
    Section layout { "Layout", {},
        "Left to right along the bar. The app buttons take whatever space is left, so whatever sits after them is "
        "pushed "
        "to the right. They cannot be hidden \u2014 without them it is not a taskbar." };
    const auto order = Settings::componentOrder();
    for (const BarComponent component : order) {
        const std::string name(title(component));
        const bool isVisible = store.isVisible(component);
        const auto move = [&](int offset, const char* symbol, const char* direction, bool isPossible) {
            return Button { "Move " + name + " " + direction,
                [store = &store, component, offset] { store->move(component, offset); }, isPossible, symbol };
        };
        Control lead = Symbol { "lock.fill", TextStyle::tertiary, "App buttons cannot be hidden" };
        if (component != BarComponent::apps)
            lead = Toggle { name, isVisible,
                [store = &store, component](bool visible) { store->setVisible(component, visible); }, true };
        layout.rows.push_back({ std::string(rawValue(component)),
            { std::move(lead), Label { name, "", isVisible ? TextStyle::primary : TextStyle::secondary },
                move(-1, "chevron.up", "up", component != order.front()),
                move(1, "chevron.down", "down", component != order.back()) } });
    }
    return { {
        std::move(layout),
        { "App buttons",
            { picker("Order", store.binding(Settings::appOrder)),
                picker("Group windows", store.binding(Settings::grouping)) },
            "Dragging an icon on the bar switches ordering to Manual. Automatic grouping shows one button per window "
            "until "
            "the bar runs out of room." },
    } };
}

Form WindowsPane::body() const
{
    const bool hasSeveral = store.screenCount() >= 2;
    return { {
        { "", { toggle("Keep windows above the taskbar", store.binding(Settings::autoFitWindows)) },
            "Resizes windows so the bar never covers them, leaving a 5pt gap \u2014 macOS extends a window's resize "
            "zone "
            "slightly past its frame, and without the gap the pointer turns into resize arrows over the bar." },
        { "Filtering", { toggle("Show only this desktop", store.binding(Settings::currentSpaceOnly)) },
            "Hides apps with no window on the Space you are looking at. Each screen is filtered against its own "
            "current "
            "desktop." },
        { "Multiple displays", { picker("Each bar shows", store.binding(Settings::multiDisplayMode), hasSeveral) },
            hasSeveral ? "A bar appears on every screen. Apps with no windows open stay on the primary bar."
                       : "Only one display is connected, so this has no effect yet." },
    } };
}

Form DockPane::body() const
{
    const bool isMigrated = store.dockMigrated();
    const NSAlert question { "Move your Dock apps into the taskbar?",
        "Your pinned apps will be copied to the taskbar and removed from the Dock.\n\n"
        "Your current Dock is backed up first and can be restored at any time.",
        { "Move Apps", "Cancel" } };
    return { {
        { "", { toggle("Keep the Dock hidden behind the taskbar", store.manageDock()) },
            "The Dock always slides out when the pointer reaches the screen edge and cannot be stopped \u2014 killing "
            "it just "
            "makes macOS relaunch it. Instead it is shrunk below the taskbar's height so it reveals behind the bar. "
            "Re-applied each time the taskbar starts." },
        { "", { button("recommended", "Use recommended setup", DockPrefs::applyRecommended) },
            "Bottom, auto-hidden and small. Minimised windows fly towards the Dock, so keeping it at the bottom "
            "matches the "
            "taskbar \u2014 a side Dock throws them off to the edge." },
        { "Mission Control",
            { button(
                  "move", isMigrated ? "Dock apps already moved" : "Move Dock apps into the taskbar\u2026",
                  [question] { confirm(question, DockPrefs::migrateToTaskbar); }, !isMigrated),
                button("restore", "Restore my Dock", DockPrefs::restoreDock, store.hasDockBackup()) },
            "Mission Control always draws the Dock, whatever auto-hide says. Emptying it is the only lever: your "
            "pinned apps "
            "move into the taskbar and the Dock shrinks to a sliver. Your original Dock is backed up first." },
    } };
}

Form ShortcutsPane::body() const
{
    return { {
        { "",
            { toggle("\u2325"
                     "1\u2013"
                     "9 switches to the nth app",
                store.binding(Settings::enableShortcuts)) },
            "Uses an event tap so the keystroke does not also reach the app underneath." },
        { "Always active",
            { row(LabeledContent { "Hide or show the taskbar", "\u2325\u2318B" }),
                row(LabeledContent { "Show desktop", "\u2325\u2318D" }) },
            "These two work even with app shortcuts switched off \u2014 \u2325\u2318B is the route back to a hidden "
            "taskbar, "
            "so it must never be unavailable." },
    } };
}

Form GeneralPane::body() const
{
    Section search { "Window search", {}, "" };
    if (store.windowSearchAvailable()) {
        search.rows.push_back(row(Label { "Screen Recording granted \u2014 window search is active.",
            "checkmark.circle", TextStyle::primary, true }));
    } else {
        search.rows.push_back(
            row(Label { "Without Screen Recording, macOS hides window titles, so search can only find applications.",
                "", TextStyle::tertiary, true }));
        search.rows.push_back(button("grant", "Grant Screen Recording\u2026", WindowIndex::requestScreenRecording));
    }
    const auto undo = [] {
        confirm({ "Undo everything and quit?", Uninstaller::summary() + "\n\n" + Uninstaller::permissionNote,
                    { "Undo and Quit", "Cancel" } },
            [] { Uninstaller::run(true); });
    };
    return { {
        { "Startup",
            { toggle("Launch at login", store.binding(Settings::launchAtLogin)),
                toggle("Show menu bar icon", store.binding(Settings::showMenuBarIcon)) },
            "The menu bar icon is how you get the taskbar back after hiding it." },
        std::move(search),
        { "Stop using Vantry",
            { toggle("Restore macOS settings when quitting", store.binding(Settings::restoreOnQuit)),
                button("undo", "Undo everything and quit\u2026", undo) },
            "Restores your Dock and gestures, removes the login item and deletes settings, then shows the app in "
            "Finder so "
            "you can drag it to the Trash." },
    } };
}
