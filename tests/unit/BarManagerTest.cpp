#include "ModelTest.h"

#include "appkit/NSScreen.h"
#include "appkit/NSWorkspace.h"
#include "bar/BarManager.h"
#include "bar/RefreshSoon.h"
#include "foundation/NSNotificationCenter.h"
#include "host/Displays.h"
#include "settings/Settings.h"
#include "unit/DrawingText.h"

#include <memory>

namespace {

/// A desktop with two displays: 1 is 1440 by 900 with a menu bar of 24, 2 lies to its right, 1000 by 800 without one.
class BarManagerTest : public ModelTest {
protected:
    void describe() override { desk.addDisplay(1000, 800).menuBarHeight = 0; }

    void SetUp() override
    {
        ModelTest::SetUp();
        NSWorkspace::sharedWorkspace().followDesktop();
        desktop().displays().onChange
            = [] { NSNotificationCenter::defaultCenter().post(NSApplicationDidChangeScreenParametersNotification); };
        Settings::barSize.set(BarSize::medium);
    }

    void startBars()
    {
        manager_ = std::make_shared<BarManager>();
        manager_->start();
        settle();
        calls().clear();
    }

    const std::shared_ptr<BarController>& bar(std::uint32_t displayID) const
    {
        return manager_->controllers().at(displayID);
    }

    std::size_t refreshes() { return count("windowList"); }

    std::shared_ptr<BarManager> manager_;
};

}

TEST_F(BarManagerTest, ARefreshThatTakesLongLeavesOtherWorkAsLong)
{
    int count = 0;
    RefreshSoon soon([&] {
        ++count;
        advance(0.03);
    });
    soon.ask();
    advance(0.03);
    EXPECT_EQ(count, 1) << "the first comes at once";
    soon.ask();
    soon.ask();
    advance(0.02);
    EXPECT_EQ(count, 1);
    advance(0.02);
    EXPECT_EQ(count, 2);
}

TEST_F(BarManagerTest, EachDisplayHasABarAlongItsEdge)
{
    const struct {
        BarEdge edge;
        BarSize size;
        CGRect first, second;
    } cases[] {
        { BarEdge::bottom, BarSize::medium, { 0, 0, 1440, 52 }, { 1440, 0, 1000, 52 } },
        { BarEdge::bottom, BarSize::large, { 0, 0, 1440, 63 }, { 1440, 0, 1000, 63 } },
        { BarEdge::top, BarSize::small, { 0, 833, 1440, 43 }, { 1440, 757, 1000, 43 } },
    };
    Settings::barStyle.set(BarStyle::translucent);
    startBars();
    for (const auto& test : cases) {
        Settings::barEdge.set(test.edge);
        Settings::barSize.set(test.size);
        EXPECT_EQ(bar(1)->window().frame(), test.first) << "moved at once";
        EXPECT_EQ(bar(2)->window().frame(), test.second);
        EXPECT_EQ(bar(2)->view()->bounds().size(), test.second.size());

        auto fresh = std::make_shared<BarManager>();
        fresh->reconcile();
        EXPECT_EQ(fresh->controllers().at(1)->window().frame(), test.first) << "made there";
    }

    const auto isBackdropHidden = [&] { return bar(1)->window().contentView()->subviews().at(0)->isHidden(); };
    EXPECT_FALSE(isBackdropHidden());
    for (const BarStyle style : { BarStyle::solid, BarStyle::translucent, BarStyle::gradient }) {
        Settings::barStyle.set(style);
        EXPECT_EQ(isBackdropHidden(), style != BarStyle::translucent) << rawValue(style);
    }
}

TEST_F(BarManagerTest, EachNewsAndTheTimerRefreshFromOneFreshWindowList)
{
    startBars();
    advance(1.4);
    EXPECT_EQ(refreshes(), 0u);
    advance(0.1);
    EXPECT_EQ(refreshes(), 1u) << "two bars share one reading of the window list";
    advance(3.0);
    EXPECT_EQ(refreshes(), 3u);

    world().removeScreen(1);
    settle();
    pid_t mail = 0;
    const std::function<void()> news[] { [&] { mail = run("Mail"); }, [&] { openWindow(mail); },
        [&] { world().activate(mail); }, [&] { world().hide(mail); }, [&] { world().unhide(mail); },
        [&] { world().showSpace(2); }, [&] { world().quit(mail); } };
    for (const auto& happen : news) {
        calls().clear();
        happen();
        settle();
        EXPECT_EQ(refreshes(), 1u) << &happen - news;
        EXPECT_EQ(names(bar(1)->currentItems()), world().process(mail) ? Texts { "Mail" } : Texts());
    }
}

TEST_F(BarManagerTest, WhatATurnBringsRefreshesEachBarOnceAsDoesAClick)
{
    const pid_t mail = run("Mail");
    openWindow(mail);
    openWindow(run("Notes"));
    startBars();
    const CGPoint button { bar(1)->view()->layoutItems()[0].rect.midX(), 20 };
    bar(1)->view()->mouseDown({ button });
    bar(1)->view()->mouseUp({ button });
    settle();
    EXPECT_EQ(world().frontmost(), mail);
    EXPECT_EQ(refreshes(), 1u);

    for (const char* name :
        { NSWorkspaceDidHideApplicationNotification, NSWorkspaceDidTerminateApplicationNotification })
        NSWorkspace::sharedWorkspace().notificationCenter().post(name);
    Settings::appOrder.set(AppOrder::manual);
    manager_->reconcile();
    settle();
    EXPECT_EQ(refreshes(), 2u);
}

TEST_F(BarManagerTest, ADroppedBarStopsAndHides)
{
    startBars();
    const auto second = bar(2);
    for (const std::size_t screen : { 1, 0 }) {
        world().removeScreen(screen);
        settle();
    }
    EXPECT_TRUE(manager_->controllers().empty());
    calls().clear();
    run("Mail");
    Settings::barVisible.set(true);
    advance(5);
    desktop().pointer().move({ 1440 + 30, 20 });
    EXPECT_EQ(refreshes(), 0u);
    EXPECT_EQ(second->view()->hoveredIndex(), std::nullopt);
    EXPECT_FALSE(second->window().isVisible());
}

TEST_F(BarManagerTest, TheMainBarsItemsAreThoseOfTheScreenWithTheFocus)
{
    startBars();
    const pid_t left = run("Left");
    openWindow(left, { 100, 100, 800, 600 });
    const pid_t right = run("Right");
    openWindow(right, { 1500, 200, 800, 500 });
    for (const auto& [pid, name] : { std::pair(left, "Left"), std::pair(right, "Right") }) {
        world().activate(pid);
        settle();
        EXPECT_EQ(names(manager_->primaryItems()), (Texts { name }));
    }

    world().addScreen(display(3, "THIRD", { 2440, 0, 800, 600 }, { 9 }));
    openWindow(left, { 2500, 350, 640, 480 });
    world().activate(left);
    ASSERT_EQ(NSScreen::mainScreen()->frame().x, 2440);
    EXPECT_EQ(names(manager_->primaryItems()), names(bar(1)->currentItems())) << "no bar there yet";
    EXPECT_TRUE(BarManager().primaryItems().empty()) << "no bars, no items";
}

TEST_F(BarManagerTest, TheMirroredBarsFitEachTheirOwnDisplay)
{
    Settings::grouping.set(WindowGrouping::automatic);
    Settings::multiDisplayMode.set(MultiDisplayMode::mirrored);
    const pid_t mail = run("Mail");
    for (int i = 0; i < 15; ++i)
        openWindow(mail);
    startBars();
    EXPECT_EQ(bar(1)->currentItems().size(), 15u) << "a button a window";
    EXPECT_EQ(bar(2)->currentItems().size(), 1u) << "too narrow for that";
}

TEST_F(BarManagerTest, AnotherAccentColourIsPaintedAtOnce)
{
    const pid_t mail = run("Mail");
    openWindow(mail, { 100, 100, 800, 600 }, "Inbox");
    world().activate(mail);
    startBars();
    const auto isPainted = [this](const std::string& color) {
        return std::ranges::any_of(described(bar(1)->view()->painted()),
            [&](const std::string& line) { return line.find(color) != line.npos; });
    };
    EXPECT_TRUE(isPainted("3478F6"));
    desktop().session().setAccentColor(0xAB12CD);
    NSNotificationCenter::defaultCenter().post(NSSystemColorsDidChangeNotification);
    settle();
    EXPECT_TRUE(isPainted("AB12CD"));
}
