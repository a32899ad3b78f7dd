#include "settingsui/SettingsPane.h"

#include "dock/LoginItem.h"
#include "settings/Settings.h"
#include "settingsui/SettingsStore.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace {

using SettingsPanes::Facts;

constexpr std::array<Facts, 6> rows { {
    { "appearance", "Appearance", "paintbrush", "Taskbar" },
    { "buttons", "Buttons", "square.grid.2x2", "Taskbar" },
    { "windows", "Windows", "macwindow", "Taskbar" },
    { "dock", "Dock", "dock.rectangle", "System" },
    { "shortcuts", "Shortcuts", "keyboard", "App" },
    { "general", "General", "gearshape", "App" },
} };

constexpr std::string_view dot = " \u00B7 ";

std::string joined(const std::vector<std::string>& parts, std::string_view between)
{
    std::string text;
    for (const std::string& part : parts) {
        if (&part != &parts.front())
            text += between;
        text += part;
    }
    return text;
}

template <ChoiceEnum Enum>
std::string lowerTitle(Enum value)
{
    std::string text(title(value));
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

std::string appearance()
{
    std::vector<std::string> parts { std::string(title(Settings::barEdge())), lowerTitle(Settings::barSize()),
        lowerTitle(Settings::barStyle()) };
    if (Settings::showBadges())
        parts.emplace_back("badges");
    if (Settings::showWindowPips())
        parts.emplace_back("pips");
    return joined(parts, dot);
}

std::string buttons()
{
    std::vector<std::string> shown;
    if (Settings::showFinderButton())
        shown.emplace_back("Finder");
    if (Settings::showTrash())
        shown.emplace_back("Trash");
    return joined({ shown.empty() ? "Apps only" : joined(shown, ", "), lowerTitle(Settings::appOrder()) }, dot);
}

std::string windows(const SettingsStore& store)
{
    std::vector<std::string> parts { Settings::autoFitWindows() ? "Auto-fit on" : "Auto-fit off",
        Settings::currentSpaceOnly() ? "this desktop" : "all desktops" };
    if (store.screenCount() >= 2)
        parts.push_back(std::to_string(store.screenCount()) + " screens");
    return joined(parts, dot);
}

std::string dock(const SettingsStore& store)
{
    if (store.dockMigrated())
        return "Apps moved to taskbar";
    return Settings::manageDock() ? "Hidden behind taskbar" : "Not managed";
}

std::string shortcuts()
{
    return Settings::enableShortcuts() ? "\u2325"
                                         "1\u2013"
                                         "9 enabled"
                                       : "\u2325"
                                         "1\u2013"
                                         "9 disabled";
}

std::string general(const SettingsStore& store)
{
    std::vector<std::string> parts { Settings::launchAtLogin() ? "Opens at login" : "Manual start" };
    if (!store.windowSearchAvailable())
        parts.emplace_back("search limited");
    return joined(parts, dot);
}

}

namespace SettingsPanes {

const Facts& facts(SettingsPane pane)
{
    return rows.at(static_cast<std::size_t>(pane));
}

std::string summary(SettingsPane pane, const SettingsStore& store)
{
    switch (pane) {
    case SettingsPane::appearance:
        return appearance();
    case SettingsPane::buttons:
        return buttons();
    case SettingsPane::windows:
        return windows(store);
    case SettingsPane::dock:
        return dock(store);
    case SettingsPane::shortcuts:
        return shortcuts();
    case SettingsPane::general:
        return general(store);
    }
    return {};
}

SettingsPane withId(std::string_view id)
{
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Facts& each) { return each.id == id; });
    return row == rows.end() ? SettingsPane::appearance : static_cast<SettingsPane>(row - rows.begin());
}

std::vector<Group> groups()
{
    std::vector<Group> all;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const std::string_view name = rows[index].group;
        auto group = std::find_if(all.begin(), all.end(), [&](const Group& each) { return each.name == name; });
        if (group == all.end())
            group = all.insert(all.end(), { name, {} });
        group->panes.push_back(static_cast<SettingsPane>(index));
    }
    return all;
}

}
