#include "ModelTest.h"

#include "settings/Settings.h"
#include "tamer/WindowTamer.h"

#include "windowserver/Damage.h"
#include <unistd.h>

namespace {

const CGRect target { 0, 24, 1440, 808 };
const CGRect overTheBar { 100, 300, 600, 700 };

/// A display of 1440 by 900 with the bar at the bottom, and the tamer at work.
class WindowTamerTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        app_ = run("Mail");
        world().activate(app_);
        WindowTamer::start();
    }

    void TearDown() override
    {
        background_.reset();
        ModelTest::TearDown();
    }

    /// A focused window.
    std::uint32_t openFocused(const CGRect& bounds)
    {
        const auto window = openWindow(app_, bounds);
        world().focus(window);
        return window;
    }

    std::uint32_t openAlert(const CGRect& bounds, int layer = 3, std::optional<pid_t> owner = {})
    {
        embedded::Scenario::Window alert;
        alert.owner = owner.value_or(background());
        alert.bounds = bounds;
        alert.layer = layer;
        return world().open(alert);
    }

    pid_t background()
    {
        if (!background_)
            background_ = run("Agent");
        return *background_;
    }

    void tick(int times = 1)
    {
        for (; times > 0; --times)
            advance(0.5);
    }

    CGRect bounds(std::uint32_t window) { return world().window(window)->bounds; }
    std::size_t writes() { return count("AXSize") + count("AXPosition") + count("AXFullScreen"); }
    Texts said()
    {
        const Texts lines = logged("tamer: ");
        log_.clear();
        return lines;
    }
    static std::string text(std::uint32_t window) { return std::to_string(window); }

    pid_t app_ = 0;

private:
    std::optional<pid_t> background_;
};

}

TEST_F(WindowTamerTest, AFocusedWindowOverTheBarIsShrunkAndThenFillsTheTarget)
{
    const auto window = openFocused(overTheBar);
    const auto low = openWindow(background(), { 100, 700, 300, 500 });
    tick();
    EXPECT_EQ(bounds(window), (CGRect { 100, 300, 600, 532 }));
    EXPECT_EQ(said(), Texts { "tamer: nudging Mail window " + text(window) + " height 700 -> 532" });
    tick();
    EXPECT_EQ(bounds(window), target);
    EXPECT_EQ(said(),
        (Texts { "tamer: bar geometry changed, re-placing window " + text(window),
            "tamer: placed window " + text(window) + " -> 1440x808" }));

    world().setBounds(window, { 20, 50, 500, 400 });
    tick(3);
    EXPECT_EQ(bounds(window), (CGRect { 20, 50, 500, 400 })) << "the user may make it smaller";
    EXPECT_EQ(bounds(low), (CGRect { 100, 700, 300, 500 })) << "nobody looks after it until it is focused";

    Settings::barSize.set(BarSize::small);
    tick();
    EXPECT_EQ(bounds(window).height, 828);
    Settings::barEdge.set(BarEdge::top);
    tick();
    EXPECT_EQ(bounds(window), (CGRect { 0, 72, 1440, 828 }));
    world().focus(low);
    world().setBounds(low, { 100, 10, 300, 2000 });
    said();
    tick();
    EXPECT_EQ(bounds(low), (CGRect { 100, 72, 300, 828 }));
    EXPECT_EQ(said().front(), "tamer: moving Agent window " + text(low) + " clear of the top bar, height 2000 -> 828");
}

TEST_F(WindowTamerTest, AWindowNearTheFootOfTheScreenIsNotMadeLowerThan200)
{
    const auto window = openFocused({ 100, 700, 600, 300 });
    tick();
    EXPECT_EQ(bounds(window), (CGRect { 100, 700, 600, 200 }));
    tick();
    EXPECT_EQ(bounds(window), target);
}

TEST_F(WindowTamerTest, AFullScreenWindowBecomesAMaximisedOne)
{
    world().faults().fullScreenDelay = 0.6;
    const auto window = openFocused({ 100, 100, 600, 400 });
    world().setFullScreen(window, true);
    tick();
    EXPECT_EQ(said(), Texts { "tamer: Mail window " + text(window) + " is full-screen, converting" });
    tick();
    EXPECT_EQ(count("AXFullScreen"), 4u) << "nothing remembers a conversion in flight: asked and read twice";
    advance(0.2);
    EXPECT_EQ(bounds(window), target) << "0.7 seconds after it was asked";
    world().faults().fullScreenDelay = 0;
    tick(3);
    EXPECT_FALSE(world().window(window)->isFullScreen());
    calls().clear();
    world().setFullScreen(window, true);
    tick(3);
    EXPECT_EQ(bounds(window), target) << "one that goes back by itself is brought out again";
}

TEST_F(WindowTamerTest, AProgramThatStaysFullScreenIsToldOnEveryTick)
{
    const auto window = openFocused({ 100, 100, 600, 400 });
    world().setFullScreen(window, true);
    world().windowFaults(window).fails["set AXFullScreen"] = -1;
    tick(2);
    const std::string converting = "tamer: Mail window " + text(window) + " is full-screen, converting";
    const std::string failed = "tamer: exit full-screen failed (-25204)";
    EXPECT_EQ(said(), (Texts { converting, failed, converting, failed }));
}

TEST_F(WindowTamerTest, AMonitorThatGoesWhileAWindowLeavesFullScreenLeavesItOnTheOther)
{
    world().addScreen(display(2, "RIGHT", { 1440, 0, 1440, 900 }, { 7 }));
    const auto window = openFocused({ 1600, 100, 600, 400 });
    world().setFullScreen(window, true);
    tick();
    world().removeScreen(1);
    tick(4);
    EXPECT_EQ(bounds(window), target);
}

TEST_F(WindowTamerTest, AWindowIsLeftAlone)
{
    const struct {
        const char* when;
        std::function<void(std::uint32_t)> arrange;
        Texts log;
    } rows[] {
        { "the bar is hidden", [](auto) { Settings::barVisible.set(false); }, {} },
        { "fitting is off", [](auto) { Settings::autoFitWindows.set(false); }, {} },
        { "it is minimised", [&](auto window) { world().setMinimised(window, true); }, {} },
        { "it is clear of the bar",
            [&](auto window) {
                world().setBounds(window, { 100, 300, 600, 533 });
            },
            {} },
        { "this program is in front",
            [&](auto) { world().activate(world().processNamed("com.merrowen.vantry")->pid()); }, {} },
        { "its position can't be read", [&](auto window) { world().windowFaults(window).fails["AXPosition"] = -1; },
            {} },
        { "its size can't be read", [&](auto window) { world().windowFaults(window).fails["AXSize"] = -1; }, {} },
        { "there is no right to", [&](auto) { world().setAccessibilityPermitted(false); }, {} },
        { "its program has no focused window", [&](auto) { world().processFaults(app_).fails["AXFocusedWindow"] = -1; },
            {} },
        { "its program names none", [&](auto) { world().processFaults(app_).misnamesFocusedWindow = true; },
            { "tamer: focused window was not an AXUIElement" } },
        { "nothing is in front", [&](auto) { world().quit(app_); }, {} },
    };
    for (const auto& row : rows) {
        TearDown();
        stop();
        SetUp();
        Settings::barVisible.set(true);
        Settings::autoFitWindows.set(true);
        const auto window = openFocused(overTheBar);
        row.arrange(window);
        const auto* before = world().window(window);
        const CGRect expected = before ? before->bounds : CGRect();
        said();
        tick();
        const auto* after = world().window(window);
        EXPECT_EQ(after ? after->bounds : CGRect(), expected) << row.when;
        EXPECT_EQ(said(), row.log) << row.when;
    }
}

TEST_F(WindowTamerTest, AlertsOfAnyProgramAreLiftedOnce)
{
    Settings::autoFitWindows.set(false);
    const struct {
        const char* what;
        CGRect bounds;
        int layer;
        std::optional<CGRect> lifted;
    } rows[] {
        { "a floating one", { 900, 750, 400, 146 }, 3, CGRect { 900, 686, 400, 146 } },
        { "the smallest, on the highest layer", { 0, 800, 120, 40 }, 10, CGRect { 0, 792, 120, 40 } },
        { "too high", { 50, 100, 400, 1000 }, 1, CGRect { 50, 24, 400, 808 } },
        { "too narrow", { 0, 800, 119, 100 }, 3, {} },
        { "too low", { 0, 800, 400, 39 }, 3, {} },
        { "an ordinary one", { 0, 800, 400, 100 }, 0, {} },
        { "one above alerts", { 0, 800, 400, 100 }, 11, {} },
        { "one that is clear", { 0, 700, 400, 133 }, 3, {} },
    };
    std::vector<std::uint32_t> windows;
    for (const auto& row : rows)
        windows.push_back(openAlert(row.bounds, row.layer));
    const auto own = openAlert({ 0, 800, 400, 100 }, 3, world().processNamed("com.merrowen.vantry")->pid());
    windowServerDamage().listEntries = { Value(Value::Dictionary { { "kCGWindowLayer", 3 } }) };
    tick();
    for (std::size_t i = 0; i < windows.size(); ++i)
        EXPECT_EQ(bounds(windows[i]), rows[i].lifted.value_or(rows[i].bounds)) << rows[i].what;
    EXPECT_EQ(bounds(own).y, 800) << "windows of this program";
    EXPECT_EQ(said().size(), 3u);

    const auto writesBefore = writes();
    tick(3);
    EXPECT_EQ(writes(), writesBefore);
    world().setBounds(windows[2], { 50, 100, 400, 1000 });
    world().setBounds(windows[0], { 900, 800, 400, 90 });
    tick();
    EXPECT_EQ(bounds(windows[2]).y, 100) << "already asked for this place";
    EXPECT_EQ(said(), Texts { "tamer: lifting Agent alert " + text(windows[0]) + " off the bar (890 -> 832)" });
}

TEST_F(WindowTamerTest, AnAlertThatIsFocusedIsPlacedInTheSameTick)
{
    const auto alert = openAlert({ 900, 750, 400, 200 }, 3, app_);
    world().focus(alert);
    tick();
    EXPECT_EQ(bounds(alert), target);
}

TEST_F(WindowTamerTest, AnAlertOnAScreenAboveOrBelowIsNotTakenAcross)
{
    world().addScreen(display(2, "BELOW", { 0, -900, 1440, 900 }, { 7 }));
    world().addScreen(display(3, "RIGHT", { 1440, 0, 1440, 900 }, { 8 }));
    const auto below = openAlert({ 200, 1000, 400, 200 });
    const auto right = openAlert({ 1600, 750, 400, 146 });
    tick();
    EXPECT_EQ(bounds(below).y, 1000);
    EXPECT_EQ(bounds(right).y, 686) << "held against the main screen's bar";
}

TEST_F(WindowTamerTest, AWindowThatRefusesIsAskedNoMoreThanOnceATick)
{
    const auto window = openFocused({ 100, 300, 600, 1000 });
    world().windowFaults(window).refusesSizes = true;
    tick(60);
    // Shrunk with one request, placed with three, in turns.
    std::size_t configures = 0;
    for (const auto& call : calls().all())
        configures += call.kind == embedded::Call::Kind::write && call.window == window;
    EXPECT_EQ(configures, 30u * 1 + 30u * 3);
    EXPECT_EQ(bounds(window).size(), (CGSize { 600, 1000 }));

    calls().clear();
    openAlert({ 900, 750, 400, 146 });
    world().windowFaults(world().windows().front().number).fails["AXPosition"] = -1;
    tick(60);
    EXPECT_EQ(calls().named("AXPosition", background()).size(), 1u) << "an alert is asked once";
}

TEST_F(WindowTamerTest, AHungProgramCostsTheTimeOutAndOneThatDiesCostsNothing)
{
    openFocused(overTheBar);
    openAlert({ 900, 750, 400, 146 });
    world().processFaults(background()).hangs = true;
    world().processFaults(app_).hangs = true;
    tick();
    for (const auto& call : calls().all())
        EXPECT_LE(call.heldUp, 0.5) << call.name;
    EXPECT_EQ(calls().named("AXWindows", background()).size(), 1u);

    for (const char* call : { "AXManualAccessibility", "AXFocusedWindow", "AXMinimized", "AXFullScreen", "AXPosition",
             "AXSize", "AXWindows" }) {
        app_ = run("Dying");
        openFocused(overTheBar);
        openAlert({ 900, 750, 400, 146 }, 3, app_);
        world().processFaults(app_).diesAt = call;
        tick(2);
        EXPECT_FALSE(world().process(app_)) << call;
    }
}

TEST_F(WindowTamerTest, FiveHundredAlertsAreEachLiftedOnce)
{
    for (int i = 0; i < 500; ++i)
        openAlert({ 2.0 * i, 800, 400, 100 });
    tick(4);
    EXPECT_EQ(count("AXPosition"), 500u);
    EXPECT_TRUE(std::ranges::all_of(world().windows(), [](const auto& window) { return window.bounds.maxY() <= 832; }));
}
