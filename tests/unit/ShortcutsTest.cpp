#include "ModelTest.h"

#include "controls/Shortcuts.h"
#include "settings/Settings.h"

#include <cstdlib>

namespace {

constexpr std::uint64_t shift = 0x20000;
constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t option = 0x80000;
constexpr std::uint64_t command = 0x100000;
constexpr std::uint64_t capsLock = 0x10000;

/// Five buttons behind a launcher, and an editor in front that keys go to.
class ShortcutsTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        editor_ = run("Editor");
        openWindow(editor_);
        world().activate(editor_);
        std::vector<BarItem> items { itemOf("Launcher", {}) };
        items.front().bundleURL = NSURL::fileURLWithPath("/System/Applications/Apps.app");
        items.front().isLauncher = true;
        for (int i = 1; i <= 5; ++i)
            items.push_back(itemOf("App" + std::to_string(i), {}));
        Shortcuts::itemsProvider = [items] { return items; };
    }

    /// What the press did: "passed", "toggled", "cleared", the button's log line, or "swallowed" for nothing.
    std::string press(std::uint16_t key, std::uint64_t flags)
    {
        log_.clear();
        calls().clear();
        const bool hasPassed = desktop().keyboard().press({ key, flags });
        EXPECT_EQ(hasPassed, count("key", editor_) == 1);
        EXPECT_TRUE(logged("shortcut: ").empty()) << "an action waits until the tap has answered";
        settle();
        if (hasPassed)
            return "passed";
        if (!logged("bar visible").empty())
            return "toggled";
        if (count("hide", editor_) > 0)
            return "cleared";
        const Texts lines = logged("shortcut: ");
        return lines.empty() ? "swallowed" : lines.front();
    }

    pid_t editor_ = 0;
};

}

TEST_F(ShortcutsTest, KeysAreClaimedByTheTable)
{
    const struct {
        const char* what;
        std::uint16_t key;
        std::uint64_t flags;
        const char* outcome;
        const char* whenSwitchedOff;
    } rows[] {
        { "the first", 18, option, "shortcut: option-1 -> App1", "passed" },
        { "the fifth, before the sixth", 23, option, "shortcut: option-5 -> App5", "passed" },
        { "shift and locks don't count", 19, option | shift | capsLock, "shortcut: option-2 -> App2", "passed" },
        { "beyond the last", 22, option, "swallowed", "passed" },
        { "the ninth", 25, option, "swallowed", "passed" },
        { "with command", 18, option | command, "passed", "passed" },
        { "with control", 18, option | control, "passed", "passed" },
        { "without option", 18, 0, "passed", "passed" },
        { "minus, between the digits", 27, option, "passed", "passed" },
        { "0", 29, option, "passed", "passed" },
        { "hide", 11, option | command, "toggled", "toggled" },
        { "hide with more", 11, option | command | control | shift, "toggled", "toggled" },
        { "b with option", 11, option, "passed", "passed" },
        { "desktop", 2, option | command, "cleared", "cleared" },
        { "d with command", 2, command, "passed", "passed" },
    };
    Shortcuts::start();
    EXPECT_EQ(log_, Texts { "shortcuts: event tap installed" });
    for (const bool isOn : { true, false }) {
        Settings::enableShortcuts.set(isOn);
        for (const auto& row : rows) {
            EXPECT_EQ(press(row.key, row.flags), isOn ? row.outcome : row.whenSwitchedOff) << row.what << isOn;
            advance(2);
            for (const auto& process : std::vector(world().processes()))
                world().unhide(process.pid());
            world().activate(editor_);
        }
    }
    Settings::enableShortcuts.set(true);
    Shortcuts::itemsProvider = nullptr;
    EXPECT_EQ(press(18, option), "swallowed") << "with nobody to ask";
}

TEST_F(ShortcutsTest, ATapThatTheSystemTurnsOffIsArmedAgain)
{
    world().faults().keyTapMissing = true;
    Shortcuts::start();
    EXPECT_EQ(logged("shortcuts: "), Texts { "shortcuts: could not create event tap" });
    EXPECT_EQ(press(11, option | command), "passed");
    Shortcuts::reenableTap("nothing");
    EXPECT_FALSE(Shortcuts::isTapEnabled());
    world().faults().keyTapMissing = false;
    world().faults().takenKeys = { "Alt+One", "Alt+Two" };
    log_.clear();
    ::setenv("BAR_PROBE_TAP", "1", 1);
    Shortcuts::start();
    Shortcuts::start();
    ::unsetenv("BAR_PROBE_TAP");
    EXPECT_EQ(logged("shortcuts: "),
        (Texts { "shortcuts: event tap lacks Alt+One, which another program has",
            "shortcuts: event tap lacks Alt+Two, which another program has" }));
    using End = host::Keyboard::TapEnd;
    for (const auto& [end, reason] : { std::pair { End::timeout, "timeout" }, { End::userInput, "user input" } }) {
        desktop().keyboard().disableTap(end);
        EXPECT_TRUE(Shortcuts::isTapEnabled());
        EXPECT_EQ(log_.back(), std::string("shortcuts: tap re-enabled after ") + reason);
        EXPECT_EQ(press(11, option | command), "toggled");
    }
    desktop().keyboard().enableTap(false);
    EXPECT_EQ(press(11, option | command), "passed");
    log_.clear();
    advance(1);
    Shortcuts::reenableTap("self-test");
    advance(1);
    EXPECT_EQ(logged("shortcuts: "),
        (Texts { "shortcuts: tap enabled = false", "shortcuts: tap re-enabled after self-test",
            "shortcuts: tap enabled = true" }));
}
