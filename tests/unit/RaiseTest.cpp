#include "ModelTest.h"

#include "accessibility/AXUIElement.h"
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
        std::size_t reopened;
    } cases[] {
        { "at once", "AXWindows", 0, true, 1, "raise: App ok (1 windows)", 0 },
        { "at the last attempt", "AXWindows", 7, true, 8, "raise: App ok (1 windows)", 0 },
        { "never a list", "AXWindows", -1, true, 8, "raise: no windows for App, reopening", 1 },
        { "never a list, nothing to open", "AXWindows", -1, false, 8, "raise: gave up on App", 0 },
        { "never raised", "AXRaise", -1, true, 8, "raise: no windows for App, reopening", 1 },
        { "raised late", "AXRaise", 2, true, 3, "raise: App ok (1 windows)", 0 },
        { "settings refused", "AXMain", -1, true, 1, "raise: App ok (1 windows)", 0 },
        { "no size at all", "AXSize", -1, true, 1, "raise: no windows for App, reopening", 1 },
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
        EXPECT_EQ(count("AXFrontmost", app_), test.attempts);
        EXPECT_EQ(log_.back(), test.lastLog);
        EXPECT_EQ(count("open"), test.reopened);
    }
}

TEST_F(RaiseTest, AttemptsComeFifteenHundredthsOfASecondApart)
{
    fail("AXWindows", -1);
    raise();
    advance(1.19);
    EXPECT_EQ(count("open"), 0u);
    advance(0.02);
    EXPECT_EQ(count("open"), 1u);
    const auto attempts = calls().named("AXFrontmost", app_);
    ASSERT_EQ(attempts.size(), 8u);
    for (std::size_t index = 1; index < attempts.size(); ++index)
        EXPECT_EQ(attempts[index].nanoseconds - attempts[index - 1].nanoseconds, 150'000'000u);
}

TEST_F(RaiseTest, AHangingApplicationCostsItsTimeOutForEachMessageAndIsLeftAtTheEnd)
{
    world().processFaults(app_).hangs = true;
    raise(false);
    advance(5);
    for (const auto& call : calls().named("AXWindows", app_))
        EXPECT_EQ(call.heldUp, 0.35);
    EXPECT_EQ(count("AXWindows", app_), 8u);
    EXPECT_EQ(log_.back(), "raise: gave up on App");
}

TEST_F(RaiseTest, OnlyAWindowOfSomeSizeIsWorthRaising)
{
    for (const CGSize size : { CGSize { 300, 200 }, CGSize { 400, 299 }, CGSize { 400, 300 } }) {
        const bool isWorthIt = size.height == 300;
        calls().clear();
        log_.clear();
        const auto window = openWindow(app_, { 0, 0, size.width, size.height });
        raise();
        advance(2);
        EXPECT_EQ(count("AXRaise"), isWorthIt ? 1u : 0u) << size.width << "x" << size.height;
        EXPECT_EQ(count("AXFrontmost", app_), 1u);
        EXPECT_EQ(count("open"), isWorthIt ? 0u : 1u);
        EXPECT_EQ(log_.front() == "raise: App has only transient windows, reopening", !isWorthIt);
        world().close(window);
    }
}

TEST_F(RaiseTest, TheFocusedWindowIsRaisedThenTheLargestThatIsVisibleThenTheLargest)
{
    struct Described {
        CGRect bounds;
        bool isMinimised;
    };
    const struct {
        const char* what;
        std::vector<Described> windows;
        /// By its place in that list; absent where the focus can't be read.
        std::optional<std::size_t> focused;
        std::size_t raised;
    } cases[] {
        { "the focused one", { { medium, false }, { large, false } }, 0, 0 },
        { "the larger one", { { medium, false }, { large, false } }, std::nullopt, 1 },
        { "a visible one before a larger minimised one", { { medium, false }, { large, true } }, std::nullopt, 0 },
        { "not a minimised one for its focus", { { medium, false }, { large, true } }, 1, 0 },
        { "the larger one when all are minimised", { { medium, true }, { large, true } }, 0, 1 },
        { "the front one of two alike", { { medium, false }, { medium, false } }, std::nullopt, 1 },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        std::vector<std::uint32_t> windows;
        for (const Described& described : test.windows)
            windows.push_back(openWindow(app_, described.bounds));
        for (std::size_t index = 0; index < windows.size(); ++index)
            world().setMinimised(windows[index], test.windows[index].isMinimised);
        if (test.focused)
            world().setMain(windows[*test.focused]);
        else
            fail("AXFocusedWindow", 1);
        calls().clear();
        log_.clear();

        raise();
        advance(1);
        const auto raised = calls().named("AXRaise", app_);
        ASSERT_EQ(raised.size(), 1u);
        EXPECT_EQ(raised[0].window, windows[test.raised]);
        EXPECT_FALSE(world().window(windows[test.raised])->isMinimised);
        const bool wasMinimised = test.windows[test.raised].isMinimised;
        EXPECT_EQ(logged("raise: un-minimising").size(), wasMinimised ? 1u : 0u);
        for (const std::uint32_t window : windows)
            world().close(window);
    }
}

TEST_F(RaiseTest, AWindowWhoseStateCannotBeReadCountsAsVisible)
{
    const auto window = openWindow(app_, large);
    world().windowFaults(window).fails["AXMinimized"] = -1;
    openWindow(app_, medium);
    fail("AXFocusedWindow", -1);
    raise();
    advance(1);
    EXPECT_EQ(calls().named("AXRaise", app_).at(0).window, window);
}

TEST_F(RaiseTest, AnApplicationThatNamesNoneOfItsWindowsIsReopened)
{
    openWindow(app_, large);
    world().processFaults(app_).namesOnlyTransientWindows = true;
    raise();
    advance(2);
    EXPECT_EQ(count("open"), 1u);
}

TEST_F(RaiseTest, AnApplicationIsToldOnceToReportItsWindows)
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
}

TEST_F(RaiseTest, AProcessThatDiesMeanwhileIsLaunchedAgain)
{
    openWindow(app_, medium);
    world().processFaults(app_).diesAt = "AXWindows";
    raise();
    advance(2);
    ASSERT_TRUE(world().processNamed("org.App"));
    EXPECT_NE(world().processNamed("org.App")->pid(), app_);
}

TEST_F(RaiseTest, TwoOfThemRunInterleaved)
{
    const pid_t other = run("Other");
    openWindow(other, medium);
    fail("AXWindows", -1);
    raise(false);
    Raise::start({ other, "Other", std::nullopt });
    settle();
    EXPECT_EQ(log_, Texts { "raise: Other ok (1 windows)" });
    advance(2);
    EXPECT_EQ(log_.back(), "raise: gave up on App");
}
