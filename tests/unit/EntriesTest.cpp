#include "ModelTest.h"

#include "model/Entries.h"
#include "settings/Settings.h"
#include "system/Displays.h"

namespace {

constexpr CGRect onMain { 100, 100, 800, 600 };
constexpr CGRect onSide { 1500, 100, 800, 600 };

/// Two displays; in the Dock a launcher and an application that don't run, and one that will.
class EntriesTest : public ModelTest {
protected:
    void describe() override
    {
        desk.displays = { display(1, "MAIN", { 0, 0, 1440, 900 }, { 1, 2 }),
            display(2, "SIDE", { 1440, 0, 1440, 900 }, { 20, 21 }) };
        for (const char* pinned : { "Apps", "Notes", "Both" })
            desk.pinnedApp(pinned);
        desk.badges = { { "Notes", "2" }, { "Both", "7" }, { "Main", "1" } };
    }

    void SetUp() override
    {
        ModelTest::SetUp();
        const pid_t main = run("Main");
        const pid_t side = run("Side");
        both_ = run("Both");
        run("None");
        const auto first = openWindow(both_, onMain, "B1");
        openWindow(both_, onSide, "B2");
        world().raise(first);
        openWindow(side, onSide, "S1");
        const auto elsewhere = openWindow(main, onMain, "M1");
        world().setSpaces(elsewhere, { 2 });
    }

    /// By the index of the display; -1 for none.
    Texts shownOn(int index, int capacity = 100)
    {
        WindowIndex::invalidate();
        const auto displays = Displays::all();
        return names(DockModel::entries(
            capacity, index < 0 ? std::nullopt : std::optional(displays.at(static_cast<std::size_t>(index)))));
    }

    pid_t both_ = 0;
};

}

TEST_F(EntriesTest, ABarShowsWhatBelongsOnItsScreenAndSpace)
{
    const Texts everything { "Apps", "Notes", "Both", "Main", "Side", "None" };
    const struct {
        MultiDisplayMode mode;
        bool currentSpaceOnly;
        int display;
        Texts shown;
    } cases[] {
        { MultiDisplayMode::perScreen, false, 0, { "Apps", "Notes", "Both", "Main", "None" } },
        { MultiDisplayMode::perScreen, false, 1, { "Apps", "Notes", "Both", "Side" } },
        { MultiDisplayMode::perScreen, false, -1, everything },
        { MultiDisplayMode::mirrored, false, 0, everything },
        { MultiDisplayMode::mirrored, false, 1, everything },
        { MultiDisplayMode::mirrored, true, 0, { "Apps", "Notes", "Both" } },
        { MultiDisplayMode::mirrored, true, 1, { "Apps", "Notes", "Both", "Side" } },
        { MultiDisplayMode::perScreen, true, 0, { "Apps", "Notes", "Both" } },
    };
    for (const auto& test : cases) {
        Settings::multiDisplayMode.set(test.mode);
        Settings::currentSpaceOnly.set(test.currentSpaceOnly);
        EXPECT_EQ(shownOn(test.display), test.shown)
            << title(test.mode) << ", space " << test.currentSpaceOnly << ", display " << test.display;
    }

    world().removeScreen(1);
    Settings::multiDisplayMode.set(MultiDisplayMode::perScreen);
    Settings::currentSpaceOnly.set(false);
    EXPECT_EQ(shownOn(0), everything) << "of one screen nothing is left out";
}

TEST_F(EntriesTest, WhatDemandsAttentionIsMarkedUntilItIsLookedAt)
{
    const auto marked = [&](WindowGrouping grouping) {
        Settings::grouping.set(grouping);
        WindowIndex::invalidate();
        auto items = DockModel::entries(100, std::nullopt);
        std::erase_if(items, [](const BarItem& item) { return !item.demandsAttention; });
        return names(items);
    };
    const auto second = world().windowsOf(both_).at(1)->number;
    world().demandAttention(second);
    EXPECT_EQ(marked(WindowGrouping::always), Texts { "Both" });
    EXPECT_EQ(marked(WindowGrouping::never), Texts { "B2" });
    world().focus(second);
    EXPECT_EQ(marked(WindowGrouping::always), Texts());

    world().demandAttention(openWindow(world().processNamed("org.Side")->pid(), { 0, 0, 180, 90 }, "Ask"));
    EXPECT_EQ(marked(WindowGrouping::never), Texts { "S1" }) << "a window without a button of its own";
}
