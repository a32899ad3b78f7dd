#include "unit/Fixture.h"

#include <algorithm>
#include <atomic>
#include <thread>

using namespace embedded;
using host::ElementID;
using host::ProcessEvent;

namespace {

class WorldTest : public DesktopTest {
protected:
    static ElementID application(pid_t pid) { return { pid, ElementID::Kind::application, 0 }; }
    static ElementID element(pid_t pid, std::uint32_t window) { return { pid, ElementID::Kind::window, window }; }

    std::size_t namedWindows(pid_t pid)
    {
        host::AttributeValue value;
        if (desktop().accessibility().read(application(pid), "AXWindows", 0.5, value) != kAXErrorSuccess)
            return 0;
        return std::get<std::vector<ElementID>>(value).size();
    }

    AXError raise(pid_t pid, std::uint32_t window)
    {
        return desktop().accessibility().perform(element(pid, window), "AXRaise", 0.35);
    }

    void record()
    {
        desktop().processes().onEvent
            = [this](ProcessEvent event, const auto& process) { events.emplace_back(event, process->pid); };
    }

    std::vector<std::pair<ProcessEvent, pid_t>> events;
};

// Rules

TEST_F(WorldTest, NewsArrivesAtTheNextTurnAndAHiddenFrontmostApplicationGivesWay)
{
    const pid_t mail = desk.app("Mail").pid();
    const pid_t browser = desk.app("Browser").pid();
    desk.window(browser, "Start");
    desk.window(mail, "Inbox");
    start();
    record();

    EXPECT_TRUE(desktop().processes().hide(browser));
    EXPECT_FALSE(world().process(browser)->record->isHidden);
    settle();

    EXPECT_EQ(
        events, (std::vector { std::pair(ProcessEvent::hidden, browser), std::pair(ProcessEvent::activated, mail) }));
}

TEST_F(WorldTest, WithNothingLeftToShowFinderComesForward)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox");
    start();

    world().hide(mail);

    EXPECT_EQ(world().frontmost(), world().processNamed(finderIdentifier)->pid());
}

TEST_F(WorldTest, ActivatingAnApplicationWhoseWindowsAreAllMinimisedMovesNothing)
{
    const pid_t mail = desk.app("Mail").pid();
    const pid_t browser = desk.app("Browser").pid();
    desk.window(browser, "Start").number(7);
    desk.window(mail, "Inbox").minimised();
    start();

    world().activate(mail);

    EXPECT_EQ(world().frontmost(), mail);
    EXPECT_EQ(world().stack().front()->number, 7u);
}

TEST_F(WorldTest, ActivatingAnApplicationGoesToTheSpaceOfItsWindow)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").on({ 2 });
    start();

    world().activate(mail);

    EXPECT_EQ(desktop().windows().activeSpace(), 2u);
}

TEST_F(WorldTest, AFullScreenWindowHasASpaceOfItsOwnThatGoesWithIt)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7).at({ 10, 40, 500, 400 });
    start();

    world().setFullScreen(7, true);
    const auto& screen = world().screens().all().front();
    ASSERT_EQ(screen.spaces.size(), 3u);
    EXPECT_EQ(screen.spaces.back().type, 4);
    EXPECT_EQ(screen.spaces.back().pid, mail);
    EXPECT_EQ(screen.currentSpace, screen.spaces.back().id);

    world().close(7);
    EXPECT_EQ(screen.spaces.size(), 2u);
    EXPECT_EQ(screen.currentSpace, 1u);
}

TEST_F(WorldTest, OpeningARunningApplicationWithoutWindowsReopensOne)
{
    const pid_t mail = desk.app("Mail").pinned().pid();
    start();

    EXPECT_TRUE(desktop().applications().open("/Applications/Mail.app"));
    settle();

    EXPECT_EQ(world().windowsOf(mail).size(), 1u);
    EXPECT_EQ(world().frontmost(), mail);
}

TEST_F(WorldTest, AKilledDockComesBackWithThePreferencesOfThatMoment)
{
    desk.app("Mail").pinned();
    desk.display(0).dockInset(70);
    start();
    record();
    const pid_t dock = world().processNamed(dockIdentifier)->pid();
    EXPECT_EQ(desktop().displays().all().front().visibleFrame.y, 70);

    auto preferences = PreferenceDomain::named(dockIdentifier);
    preferences->set("autohide", true);
    preferences->set("persistent-apps", Value::Array {});
    EXPECT_EQ(world().dock().tiles().size(), 1u);
    desktop().processes().terminate(dock);
    advance(1);

    const RunningProcess* relaunched = world().processNamed(dockIdentifier);
    ASSERT_TRUE(relaunched);
    EXPECT_NE(relaunched->pid(), dock);
    EXPECT_TRUE(world().dock().tiles().empty());
    EXPECT_EQ(desktop().displays().all().front().visibleFrame.y, 0);
}

TEST_F(WorldTest, WindowsOfARemovedDisplayFindRefugeOnThePrimaryOne)
{
    desk.addDisplay();
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7).at({ 1500, 100, 400, 300 });
    start();
    EXPECT_EQ(world().window(7)->spaces, std::vector<std::uint64_t> { 3 });

    world().removeScreen(1);

    EXPECT_EQ(world().window(7)->spaces, std::vector<std::uint64_t> { 1 });
}

TEST_F(WorldTest, TheSessionsFilesOutliveTheDesktop)
{
    desk.trash({ "old.txt" });
    start();
    std::filesystem::remove(desktop().session().homeFolder() + "/.Trash/old.txt");
    stop();
    start();

    EXPECT_TRUE(std::filesystem::is_empty(desktop().session().homeFolder() + "/.Trash"));
}

// The fault box

struct FaultCase {
    const char* name;
    std::function<void(ProcessFaults&, WindowFaults&)> plant;
    /// What three raises in a row give.
    std::vector<AXError> raises;
    std::size_t namedWindows;
};

class AccessibilityFaults : public WorldTest, public testing::WithParamInterface<FaultCase> { };

TEST_P(AccessibilityFaults, ShowInWhatTheProgramIsAnswered)
{
    const pid_t mail = desk.app("Mail").pid();
    auto window = desk.window(mail, "Inbox").number(7);
    GetParam().plant(desk.scenario().processes.back().faults, window->faults);
    start();

    EXPECT_EQ(namedWindows(mail), GetParam().namedWindows);
    for (const AXError result : GetParam().raises)
        EXPECT_EQ(raise(mail, 7), result);
}

INSTANTIATE_TEST_SUITE_P(Each, AccessibilityFaults,
    testing::Values(FaultCase { "none", [](auto&, auto&) {}, { kAXErrorSuccess, kAXErrorSuccess, kAXErrorSuccess }, 1 },
        FaultCase { "hangs", [](auto& process, auto&) { process.hangs = true; },
            { kAXErrorCannotComplete, kAXErrorCannotComplete, kAXErrorCannotComplete }, 0 },
        FaultCase { "failsTwice", [](auto& process, auto&) { process.fails["AXRaise"] = 2; },
            { kAXErrorCannotComplete, kAXErrorCannotComplete, kAXErrorSuccess }, 1 },
        FaultCase { "windowAlwaysFails", [](auto&, auto& window) { window.fails["AXRaise"] = -1; },
            { kAXErrorCannotComplete, kAXErrorCannotComplete, kAXErrorCannotComplete }, 1 },
        FaultCase { "diesAtTheRaise", [](auto& process, auto&) { process.diesAt = "AXRaise"; },
            { kAXErrorCannotComplete, kAXErrorInvalidUIElement, kAXErrorInvalidUIElement }, 1 },
        FaultCase { "silentAtFirst", [](auto& process, auto&) { process.needsManualAccessibility = true; },
            { kAXErrorSuccess }, 0 },
        FaultCase { "namesOnlySmallOnes", [](auto& process, auto&) { process.namesOnlyTransientWindows = true; },
            { kAXErrorSuccess }, 0 }),
    [](const auto& fault) { return fault.param.name; });

TEST_F(WorldTest, ASilentApplicationNamesItsWindowsOnceItIsTold)
{
    auto mail = desk.app("Mail");
    mail->faults.needsManualAccessibility = true;
    desk.window(mail.pid(), "Inbox");
    start();

    desktop().accessibility().write(application(mail.pid()), "AXManualAccessibility", 0.5, true);

    EXPECT_EQ(namedWindows(mail.pid()), 1u);
}

TEST_F(WorldTest, AHangCostsTheTimeOutWithoutLettingTimePass)
{
    auto mail = desk.app("Mail");
    mail->faults.hangs = true;
    start();
    const auto before = clock.nanoseconds();

    EXPECT_EQ(namedWindows(mail.pid()), 0u);

    EXPECT_EQ(clock.nanoseconds(), before);
    ASSERT_EQ(calls().named("AXWindows").size(), 1u);
    EXPECT_EQ(calls().named("AXWindows")[0].heldUp, 0.5);
}

TEST_F(WorldTest, WithoutTrustEveryCallIsRefused)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7);
    desk.scenario().accessibilityPermitted = false;
    start();

    EXPECT_FALSE(desktop().accessibility().isTrusted(true));
    EXPECT_EQ(raise(mail, 7), kAXErrorAPIDisabled);
}

TEST_F(WorldTest, AReluctantApplicationHidesAtTheSecondRequest)
{
    auto mail = desk.app("Mail");
    mail->faults.refusesToHide = Refusal::once;
    start();

    for (const bool hides : { false, true }) {
        desktop().processes().hide(mail.pid());
        settle();
        EXPECT_EQ(world().process(mail.pid())->record->isHidden, hides);
    }
}

TEST_F(WorldTest, AWindowKeepsToTheSizesThatItTakes)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Small").number(7)->faults.minimumSize = CGSize { 300, 0 };
    desk.window(mail, "Stubborn").number(8)->faults.refusesSizes = true;
    start();

    world().setBounds(7, { 0, 30, 200, 200 });
    world().setBounds(8, { 0, 30, 200, 200 });

    EXPECT_EQ(world().window(7)->bounds, (CGRect { 0, 30, 300, 200 }));
    EXPECT_EQ(world().window(8)->bounds, (CGRect { 0, 30, 640, 480 }));
}

TEST_F(WorldTest, TheWindowListCanBeAbsentDamagedOrWithoutTitles)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7);
    desk.scenario().faults.windowListEntries = { Value("no entry"), Value::Dictionary { { "kCGWindowNumber", "x" } } };
    start();

    world().setScreenCapturePermitted(false);
    const auto list = desktop().windows().list(false);
    ASSERT_EQ(list->array()->size(), 3u);
    EXPECT_EQ(list->array()->at(0), Value("no entry"));
    EXPECT_EQ(list->array()->at(2).find("kCGWindowName"), nullptr);

    world().faults().windowListMissing = true;
    EXPECT_FALSE(desktop().windows().list(false));
}

TEST_F(WorldTest, AFullScreenWindowLeavesInItsOwnTime)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7).fullScreen();
    desk.scenario().faults.fullScreenDelay = 0.5;
    start();

    desktop().accessibility().write(element(mail, 7), "AXFullScreen", 0.5, false);

    advance(0.4);
    EXPECT_TRUE(world().window(7)->isFullScreen());
    advance(0.2);
    EXPECT_FALSE(world().window(7)->isFullScreen());
}

// Badges

TEST_F(WorldTest, TheDocksTilesCarryTheirBadges)
{
    desk.app("Mail").pinned();
    desk.app("Chat").pinned();
    desk.badge("Chat", "3");
    start();
    const pid_t dock = world().processNamed(dockIdentifier)->pid();
    auto& accessibility = desktop().accessibility();

    host::AttributeValue lists;
    host::AttributeValue tiles;
    ASSERT_EQ(accessibility.read(application(dock), "AXChildren", 0.5, lists), kAXErrorSuccess);
    const ElementID list = std::get<std::vector<ElementID>>(lists).at(0);
    ASSERT_EQ(accessibility.read(list, "AXChildren", 0.5, tiles), kAXErrorSuccess);
    const auto elements = std::get<std::vector<ElementID>>(tiles);
    ASSERT_EQ(elements.size(), 2u);

    host::AttributeValue text;
    EXPECT_EQ(accessibility.read(elements[0], "AXStatusLabel", 0.5, text), kAXErrorNoValue);
    EXPECT_EQ(accessibility.read(elements[1], "AXTitle", 0.5, text), kAXErrorSuccess);
    EXPECT_EQ(text, host::AttributeValue("Chat"));
    EXPECT_EQ(accessibility.read(elements[1], "AXStatusLabel", 0.5, text), kAXErrorSuccess);
    EXPECT_EQ(text, host::AttributeValue("3"));
}

// Other threads

/// The machine's clock: threads can't wait for one that stands still.
class ThreadedTest : public WorldTest {
protected:
    ThreadedTest() { RunLoop::main().setClock(nullptr); }

    AXError raiseFromAnotherThread(pid_t pid, bool mainThreadAnswers)
    {
        std::atomic<int> result = kAXErrorNotImplemented;
        std::thread caller([&] { result = raise(pid, 7); });
        while (mainThreadAnswers && result == kAXErrorNotImplemented) {
            RunLoop::main().runDue();
            std::this_thread::yield();
        }
        caller.join();
        return static_cast<AXError>(result.load());
    }
};

TEST_F(ThreadedTest, CallsOfAnotherThreadWaitForTheMainThreadUpToTheirTimeOut)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7);
    start();

    EXPECT_EQ(raiseFromAnotherThread(mail, true), kAXErrorSuccess);
    EXPECT_EQ(raiseFromAnotherThread(mail, false), kAXErrorCannotComplete);
}

}
