#include "ModelTest.h"

#include "settings/Settings.h"
#include "tamer/WindowTamer.h"

#include "windowserver/Damage.h"

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

    pid_t background() { return background_ ? *background_ : background_.emplace(run("Agent")); }

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

    Settings::barEdge.set(BarEdge::bottom);
    const auto foot = openFocused({ 100, 720, 600, 300 });
    tick();
    EXPECT_EQ(bounds(foot), (CGRect { 100, 720, 600, 200 })) << "near the foot of the screen it isn't made lower";
    const auto alert = openAlert({ 900, 750, 400, 200 }, 3, app_);
    world().focus(alert);
    tick();
    EXPECT_EQ(bounds(alert), (CGRect { 0, 24, 1440, 828 })) << "an alert that is focused is placed in the same tick";
}

TEST_F(WindowTamerTest, AFullScreenWindowBecomesAMaximisedOne)
{
    world().addScreen(display(2, "RIGHT", { 1440, 0, 1440, 900 }, { 7 }));
    world().faults().fullScreenDelay = 0.6;
    const auto window = openFocused({ 100, 100, 600, 400 });
    const std::string converting = "tamer: Mail window " + text(window) + " is full-screen, converting";
    world().setFullScreen(window, true);
    tick();
    EXPECT_EQ(said(), Texts { converting });
    tick();
    EXPECT_EQ(count("AXFullScreen"), 4u) << "nothing remembers a conversion in flight: asked and read twice";
    advance(0.2);
    EXPECT_EQ(bounds(window), target) << "0.7 seconds after it was asked";
    world().faults().fullScreenDelay = 0;
    tick(3);
    EXPECT_FALSE(world().window(window)->isFullScreen());
    world().setFullScreen(window, true);
    tick(3);
    EXPECT_EQ(bounds(window), target) << "one that goes back by itself is brought out again";

    world().setBounds(window, { 1600, 100, 600, 400 });
    world().setFullScreen(window, true);
    tick();
    world().removeScreen(1);
    tick(4);
    EXPECT_EQ(bounds(window), target) << "a monitor that goes meanwhile leaves it on the other";

    world().setFullScreen(window, true);
    world().windowFaults(window).fails["set AXFullScreen"] = -1;
    said();
    tick(2);
    const std::string failed = "tamer: exit full-screen failed (-25204)";
    EXPECT_EQ(said(), (Texts { converting, failed, converting, failed })) << "one that stays is told on every tick";
}

TEST_F(WindowTamerTest, AWindowIsLeftAlone)
{
    const auto own = world().processNamed("com.merrowen.vantry")->pid();
    std::uint32_t window = 0;
    const struct {
        const char* when;
        std::function<void()> arrange;
        Texts log = {};
    } rows[] {
        { "the bar is hidden", [] { Settings::barVisible.set(false); } },
        { "fitting is off", [] { Settings::autoFitWindows.set(false); } },
        { "it is minimised", [&] { world().setMinimised(window, true); } },
        { "it is clear of the bar",
            [&] {
                world().setBounds(window, { 100, 300, 600, 533 });
            } },
        { "this program is in front", [&] { world().activate(own); } },
        { "its position can't be read", [&] { world().windowFaults(window).fails["AXPosition"] = -1; } },
        { "its size can't be read", [&] { world().windowFaults(window).fails["AXSize"] = -1; } },
        { "there is no right to", [&] { world().setAccessibilityPermitted(false); } },
        { "its program has no focused window", [&] { world().processFaults(app_).fails["AXFocusedWindow"] = -1; } },
        { "its program names none", [&] { world().processFaults(app_).misnamesFocusedWindow = true; },
            { "tamer: focused window was not an AXUIElement" } },
        { "nothing is in front", [&] { world().quit(app_); } },
    };
    for (const auto& row : rows) {
        TearDown();
        stop();
        background_.reset();
        std::filesystem::remove_all(root() / "Preferences");
        SetUp();
        window = openFocused(overTheBar);
        row.arrange();
        const auto height = [&] { return world().window(window) ? bounds(window).height : 0; };
        const double expected = height();
        said();
        tick();
        EXPECT_EQ(height(), expected) << row.when;
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

TEST_F(WindowTamerTest, AnAlertOnAScreenAboveOrBelowIsNotTakenAcross)
{
    world().addScreen(display(2, "BELOW", { 0, -900, 1440, 900 }, { 7 }));
    world().addScreen(display(3, "RIGHT", { 1440, 0, 1440, 900 }, { 8 }));
    const auto below = openAlert({ 200, 1000, 400, 200 });
    std::vector<std::uint32_t> right(100);
    for (std::uint32_t& each : right)
        each = openAlert({ 1600, 750, 400, 146 });
    tick(4);
    EXPECT_EQ(bounds(below).y, 1000);
    for (const std::uint32_t each : right)
        EXPECT_EQ(bounds(each).y, 686) << "held against the main screen's bar";
    EXPECT_EQ(count("AXPosition"), right.size());
}

TEST_F(WindowTamerTest, AWindowThatRefusesIsAskedNoMoreThanOnceATick)
{
    const auto window = openFocused({ 100, 300, 600, 1000 });
    world().windowFaults(window).refusesSizes = true;
    tick(60);
    EXPECT_EQ(std::ranges::count_if(calls().all(),
                  [&](const auto& call) { return call.kind == embedded::Call::Kind::write && call.window == window; }),
        30 * 1 + 30 * 3)
        << "shrunk with one request, placed with three, in turns";
    EXPECT_EQ(bounds(window).size(), (CGSize { 600, 1000 }));

    calls().clear();
    openAlert({ 900, 750, 400, 146 });
    world().windowFaults(world().windows().front().number).fails["AXPosition"] = -1;
    tick(60);
    EXPECT_EQ(calls().named("AXPosition", background()).size(), 1u) << "an alert is asked once";
}
