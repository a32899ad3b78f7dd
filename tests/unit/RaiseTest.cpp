#include "ModelTest.h"

#include "model/Raise.h"

namespace {

constexpr CGRect large { 0, 0, 1000, 800 };
constexpr CGRect medium { 0, 0, 600, 500 };

class RaiseTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        app_ = run("App");
    }

    void raise(bool canReopen = true)
    {
        Raise::start({ app_, "App", canReopen ? std::optional(NSURL::fileURLWithPath(path("App"))) : std::nullopt });
    }

    void fail(const std::string& call, int times) { world().processFaults(app_).fails[call] = times; }

    pid_t app_ = 0;
};

}

TEST_F(RaiseTest, AttemptsAreMadeUntilOneSucceedsOrTheTimeIsUp)
{
    const struct {
        const char* what;
        const char* failing;
        int times;
        bool canReopen;
        std::size_t attempts;
        const char* lastLog;
    } cases[] {
        { "at once", "AXWindows", 0, true, 1, "raise: App ok (1 windows)" },
        { "at the last attempt", "AXWindows", 7, true, 8, "raise: App ok (1 windows)" },
        { "never a list", "AXWindows", -1, true, 8, "raise: no windows for App, reopening" },
        { "never a list, nothing to open", "AXWindows", -1, false, 8, "raise: gave up on App" },
        { "never raised", "AXRaise", -1, true, 8, "raise: no windows for App, reopening" },
        { "settings refused", "AXMain", -1, true, 1, "raise: App ok (1 windows)" },
        { "no size at all", "AXSize", -1, true, 1, "raise: no windows for App, reopening" },
    };
    openWindow(app_, medium);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        calls().clear();
        log_.clear();
        fail(test.failing, test.times);
        raise(test.canReopen);
        advance(5);
        world().processFaults(app_).fails.clear();
        EXPECT_EQ(log_.back(), test.lastLog);
        EXPECT_EQ(count("open"), log_.back().ends_with("reopening") ? 1u : 0u);
        const auto attempts = calls().named("AXFrontmost", app_);
        ASSERT_EQ(attempts.size(), test.attempts);
        EXPECT_EQ(attempts.back().nanoseconds - attempts.front().nanoseconds, 150'000'000u * (test.attempts - 1));
    }

    calls().clear();
    world().processFaults(app_).hangs = true;
    raise(false);
    advance(5);
    for (const auto& call : calls().named("AXWindows", app_))
        EXPECT_EQ(call.heldUp, 0.35);
    EXPECT_EQ(count("AXWindows", app_), 8u);
    EXPECT_EQ(log_.back(), "raise: gave up on App");
}

TEST_F(RaiseTest, TheFocusedWindowIsRaisedThenTheLargestThatIsVisibleThenTheLargest)
{
    const struct {
        const char* what;
        /// Of the first of two windows; the second is the front one.
        CGRect bounds;
        bool isFirstMinimised;
        bool isSecondMinimised;
        /// Absent where the focus can't be read.
        std::optional<std::size_t> focused;
        std::size_t raised;
        /// Whether the state of the second can't be read.
        bool isMute = false;
    } cases[] {
        { "the focused one", medium, false, false, 0, 0 },
        { "the larger one", medium, false, false, std::nullopt, 1 },
        { "a visible one before a larger minimised one", medium, false, true, std::nullopt, 0 },
        { "not a minimised one for its focus", medium, false, true, 1, 0 },
        { "the larger one when all are minimised", medium, true, true, 0, 1 },
        { "the front one of two alike", large, false, false, std::nullopt, 1 },
        { "one that may be visible", medium, true, false, std::nullopt, 1, true },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const std::uint32_t windows[] { openWindow(app_, test.bounds), openWindow(app_, large) };
        world().setMinimised(windows[0], test.isFirstMinimised);
        world().setMinimised(windows[1], test.isSecondMinimised);
        if (test.focused)
            world().setMain(windows[*test.focused]);
        else
            fail("AXFocusedWindow", 1);
        if (test.isMute)
            world().windowFaults(windows[1]).fails["AXMinimized"] = -1;
        const bool wasMinimised = world().window(windows[test.raised])->isMinimised;
        calls().clear();
        log_.clear();

        raise();
        advance(1);
        const auto raised = calls().named("AXRaise", app_);
        ASSERT_EQ(raised.size(), 1u);
        EXPECT_EQ(raised[0].window, windows[test.raised]);
        EXPECT_FALSE(world().window(windows[test.raised])->isMinimised);
        EXPECT_EQ(logged("raise: un-minimising").size(), wasMinimised ? 1u : 0u);
        for (const std::uint32_t window : windows)
            world().close(window);
    }
}

TEST_F(RaiseTest, AnApplicationIsToldOnceToReportItsWindowsAndReopenedWhereItNamesNoneOrDies)
{
    openWindow(app_, medium);
    world().processFaults(app_).needsManualAccessibility = true;
    for (int round = 0; round < 3; ++round) {
        raise();
        advance(1);
    }
    EXPECT_EQ(count("AXManualAccessibility", app_), 1u);
    EXPECT_EQ(count("AXFrontmost", app_), 3u);
    EXPECT_EQ(logged("raise: App ok").size(), 3u);

    world().processFaults(app_).namesOnlyTransientWindows = true;
    raise();
    advance(2);
    EXPECT_EQ(count("open"), 1u);
    world().processFaults(app_).diesAt = "AXWindows";
    raise();
    advance(2);
    ASSERT_TRUE(world().processNamed("org.App"));
    EXPECT_NE(world().processNamed("org.App")->pid(), app_);
}
