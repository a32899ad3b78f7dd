#include "Fixture.h"

#include "appkit/NSAlert.h"
#include "foundation/NSUserDefaults.h"
#include "look/HexColor.h"
#include "settings/Settings.h"
#include "settingsui/Panes.h"
#include "settingsui/SettingsWindowController.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <variant>

namespace {

namespace fs = std::filesystem;

using namespace forms;

template <class Pane>
Form page()
{
    return Pane { SettingsStore::shared() }.body();
}

struct Page {
    const char* name;
    Form (*describe)();
};

constexpr Page pages[]
    = { { "appearance", page<AppearancePane> }, { "buttons", page<ButtonsPane> }, { "windows", page<WindowsPane> },
          { "dock", page<DockPane> }, { "shortcuts", page<ShortcutsPane> }, { "general", page<GeneralPane> } };

const Row* findRow(const Form& form, const std::string& id)
{
    for (const Section& section : form.sections)
        for (const Row& row : section.rows)
            if (row.id == id)
                return &row;
    return nullptr;
}

template <class Kind>
Kind control(const Form& form, const std::string& id, std::size_t place = 0)
{
    const Row* row = findRow(form, id);
    if (!row)
        throw std::runtime_error("no row " + id);
    return std::get<Kind>(row->controls.at(place));
}

/// What a control holds, as text; what it does when it is given something else to hold.

std::string held(const Toggle& toggle)
{
    return toggle.isOn ? "on" : "off";
}
std::string held(const Picker& picker)
{
    return picker.options.at(picker.selection);
}
std::string held(const Slider& slider)
{
    return slider.valueText;
}
std::string held(const ColorPicker& picker)
{
    return HexColor::hexString(picker.value);
}

std::string change(const Toggle& toggle)
{
    toggle.set(!toggle.isOn);
    return toggle.isOn ? "off" : "on";
}
std::string change(const Picker& picker)
{
    const std::size_t other = (picker.selection + 1) % picker.options.size();
    picker.set(other);
    return picker.options[other];
}
std::string change(const Slider& slider)
{
    slider.set(0.75);
    return "75%";
}
std::string change(const ColorPicker& picker)
{
    picker.set(NSColor::colorWithSRGBRed(0, 1, 0, 1));
    return "00FF00";
}

class SettingsWindowTest : public DesktopTest {
protected:
    SettingsWindowController& controller() { return SettingsWindowController::shared(); }

    /// The line below a page's title in the sidebar.
    std::string summary(const std::string& title)
    {
        SettingsRootView root;
        for (const SidebarSection& section : root.body().sidebar)
            for (const SidebarRow& row : section.rows)
                if (row.title == title)
                    return row.summary;
        return "no page of that title";
    }
};

}

TEST_F(SettingsWindowTest, EachControlShowsWhatItHasChangedAndSaysSoBefore)
{
    desk.pinnedApp("Mail");
    start();
    Settings::accentHex.set("112233"); // So that its row shows.
    int tellings = 0;
    SettingsStore::shared().objectWillChange = [&] { ++tellings; };
    int tried = 0;
    for (const Page& each : pages) {
        const Form before = each.describe();
        for (const Section& section : before.sections) {
            for (const Row& row : section.rows) {
                for (std::size_t place = 0; place < row.controls.size(); ++place) {
                    SCOPED_TRACE(std::string(each.name) + ": " + row.id);
                    std::visit(
                        [&](const auto& known) {
                            using Kind = std::decay_t<decltype(known)>;
                            if constexpr (requires { change(known); }) {
                                if (row.id == "Use the system accent colour")
                                    return; // Its own test is below.
                                const int told = tellings;
                                const std::string wanted = change(known);
                                EXPECT_GT(tellings, told);
                                EXPECT_EQ(held(control<Kind>(each.describe(), row.id, place)), wanted);
                                ++tried;
                            }
                        },
                        row.controls[place]);
                }
            }
        }
    }
    EXPECT_EQ(tried, 26);
    EXPECT_EQ(world().dock().tileSize(), 48) << "to manage the Dock no more undoes nothing, and does nothing";
}

TEST_F(SettingsWindowTest, WhatAPageHoldsFollowsWhatItIsAbout)
{
    desk.pinnedApp("Mail");
    start();
    const auto accent = [] { return control<Toggle>(page<AppearancePane>(), "Use the system accent colour"); };
    EXPECT_TRUE(accent().isOn);
    EXPECT_FALSE(findRow(page<AppearancePane>(), "Accent"));
    desktop().session().setAccentColor(0xAB12CD);
    accent().set(false);
    EXPECT_EQ(Settings::accentHex(), "AB12CD") << "the system's present one, to begin with";
    EXPECT_TRUE(findRow(page<AppearancePane>(), "Accent"));
    accent().set(true);
    EXPECT_EQ(Settings::accentHex(), "");

    // The first can't go up, the last not down, and what can't be hidden has no switch.
    const auto up = [](const char* id) { return control<Button>(page<ButtonsPane>(), id, 2); };
    const auto down = [](const char* id) { return control<Button>(page<ButtonsPane>(), id, 3); };
    EXPECT_FALSE(up("launcher").isEnabled);
    EXPECT_FALSE(down("trash").isEnabled);
    EXPECT_TRUE(std::holds_alternative<Symbol>(findRow(page<ButtonsPane>(), "apps")->controls.front()));
    int changes = 0;
    SettingsStore::shared().objectWillChange = [&] { ++changes; };
    up("launcher").action();
    down("trash").action();
    EXPECT_EQ(changes, 0);
    down("apps").action();
    EXPECT_FALSE(down("apps").isEnabled);
    EXPECT_EQ(Settings::componentOrder().back(), BarComponent::apps);
    up("apps").action();
    EXPECT_TRUE(std::ranges::equal(Settings::componentOrder(), allCases<BarComponent>()));
    control<Toggle>(page<ButtonsPane>(), "search").set(false);
    EXPECT_EQ(control<Label>(page<ButtonsPane>(), "search", 1).style, TextStyle::secondary);

    // Without a window with a title, search is limited.
    EXPECT_TRUE(findRow(page<GeneralPane>(), "grant"));
    EXPECT_EQ(summary("General"), "Manual start \u00B7 search limited");
}

TEST_F(SettingsWindowTest, SummariesSayWhatIsInForce)
{
    desk.window(desk.app("Mail").pid, "Inbox");
    desk.addDisplay();
    start();
    struct Row {
        const char* page;
        std::function<void()> change;
        const char* expected;
    };
    const Row rows[] = {
        { "Appearance", [] {}, "Bottom \u00B7 large \u00B7 solid \u00B7 badges \u00B7 pips" },
        { "Appearance",
            [] {
                Settings::showBadges.set(false);
                Settings::showWindowPips.set(false);
            },
            "Bottom \u00B7 large \u00B7 solid" },
        { "Buttons", [] {}, "Finder, Trash \u00B7 dock order" },
        { "Buttons", [] { Settings::showFinderButton.set(false); }, "Trash \u00B7 dock order" },
        { "Buttons",
            [] {
                Settings::showTrash.set(false);
                Settings::appOrder.set(AppOrder::manual);
            },
            "Apps only \u00B7 manual (drag to reorder)" },
        { "Windows", [] {}, "Auto-fit on \u00B7 all desktops \u00B7 2 screens" },
        { "Windows", [this] { world().removeScreen(1); }, "Auto-fit on \u00B7 all desktops" },
        { "Dock", [] {}, "Hidden behind taskbar" },
        { "Dock", [] { Settings::manageDock.set(false); }, "Not managed" },
        { "Dock", [] { Settings::dockMigrated.set(true); }, "Apps moved to taskbar" },
        { "Shortcuts", [] { Settings::enableShortcuts.set(false); },
            "\u2325"
            "1\u2013"
            "9 disabled" },
        { "General", [] {}, "Manual start" },
    };
    for (const Row& row : rows) {
        row.change();
        settle();
        EXPECT_EQ(summary(row.page), row.expected);
    }
}

TEST_F(SettingsWindowTest, AQuestionIsCarriedOutByItsFirstButtonAlone)
{
    desk.pinnedApp("Mail");
    start();
    const auto move = [] { return control<Button>(page<DockPane>(), "move"); };
    for (const std::size_t button : { 1u, 0u }) {
        move().action();
        move().action();
        ASSERT_TRUE(NSAlert::open());
        EXPECT_EQ(NSAlert::open()->messageText, "Move your Dock apps into the taskbar?");
        advance(10); // Time goes on under a question.
        NSAlert::answer(button);
        settle();
        EXPECT_FALSE(NSAlert::open()) << "asked once, however often the button is pressed";
        EXPECT_EQ(Settings::dockMigrated(), button == 0);
    }
    EXPECT_EQ(move().title, "Dock apps already moved");
    EXPECT_FALSE(move().isEnabled);
    const Button restore = control<Button>(page<DockPane>(), "restore");
    EXPECT_TRUE(restore.isEnabled);
    restore.action();
    EXPECT_FALSE(Settings::dockMigrated());
}

TEST_F(SettingsWindowTest, TheWindowIsOneAndStaysWhereItWasPut)
{
    start();
    controller().show();
    const NSWindow* window = controller().window();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->frame(), (CGRect { 280, 128, 880, 620 })) << "in the middle of what is free";
    controller().content().select("dock");
    const_cast<NSWindow*>(window)->close();
    EXPECT_FALSE(window->isVisible());
    controller().show();
    EXPECT_EQ(controller().window(), window);
    EXPECT_EQ(controller().content().title, "Dock");

    struct Row {
        const char* saved;
        CGRect expected;
    };
    const Row rows[] = {
        { "100 50 900 700", { 100, 50, 900, 700 } },
        { "5000 -3000 900 700", { 540, 0, 900, 700 } },
        { "0 0 90000 90000", { 0, 0, 1440, 876 } },
        { "10 10 300 200", { 10, 10, 780, 540 } },
        { "rubbish", { 280, 128, 880, 620 } },
        { "1 2 -3 4", { 280, 128, 880, 620 } },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.saved);
        stop();
        start();
        NSUserDefaults::standard().setObject(row.saved, "NSWindow Frame VantrySettingsWindow");
        controller().show();
        EXPECT_EQ(controller().window()->frame(), row.expected);
    }

    // The screen that it is on goes.
    stop();
    desk.addDisplay();
    start();
    NSUserDefaults::standard().setObject("1500 50 900 700", "NSWindow Frame VantrySettingsWindow");
    controller().show();
    EXPECT_EQ(controller().window()->frame().x, 1500);
    world().removeScreen(1);
    NSWindow::keepAllOnScreens();
    EXPECT_EQ(controller().window()->frame(), (CGRect { 540, 50, 900, 700 }));
}

TEST_F(SettingsWindowTest, WhatCantBeSavedIsInForceAndToldOnce)
{
    start();
    const auto file = root() / "Preferences/com.merrowen.vantry.plist";
    fs::remove_all(root() / "Preferences");
    std::ofstream(root() / "Preferences") << "in the way of the folder";
    auto toggle = [] { return control<Toggle>(page<AppearancePane>(), "Float above the screen edge"); };
    toggle().set(true);
    ASSERT_TRUE(NSAlert::open());
    EXPECT_EQ(NSAlert::open()->messageText, "Your settings can't be saved");
    NSAlert::answer(0);
    settle();
    EXPECT_TRUE(toggle().isOn);
    control<Toggle>(page<AppearancePane>(), "Notification badges").set(false);
    EXPECT_FALSE(NSAlert::open());
    fs::remove(root() / "Preferences");
    control<Toggle>(page<AppearancePane>(), "Tooltips on hover").set(false);
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    for (const char* key : { "floatingBar", "showBadges", "showTooltips" })
        EXPECT_NE(text.str().find(key), std::string::npos) << key << " is saved with what can be";
}
