#include "foundation/PreferenceDomain.h"
#include "unit/Fixture.h"

#include <atomic>
#include <thread>

using namespace embedded;
using host::ElementID;
using host::ProcessEvent;

namespace {

class WorldTest : public DesktopTest {
protected:
    AXError raise(pid_t pid, std::uint32_t window)
    {
        return desktop().accessibility().perform({ pid, ElementID::Kind::window, window }, host::Action::raise, 0.35);
    }
};

TEST_F(WorldTest, NewsArrivesAtTheNextTurnAndAHiddenFrontmostApplicationGivesWay)
{
    const pid_t mail = desk.app("Mail").pid();
    const pid_t browser = desk.app("Browser").pid();
    desk.window(browser, "Start");
    desk.window(mail, "Inbox");
    start();
    std::vector<std::pair<ProcessEvent, pid_t>> events;
    desktop().processes().onEvent
        = [&](ProcessEvent event, const auto& process) { events.emplace_back(event, process->pid); };

    EXPECT_TRUE(desktop().processes().hide(browser));
    EXPECT_FALSE(world().process(browser)->record->isHidden);
    settle();

    EXPECT_EQ(
        events, (std::vector { std::pair(ProcessEvent::hidden, browser), std::pair(ProcessEvent::activated, mail) }));
}

TEST_F(WorldTest, WhatComesForwardIsShownAndWhatLosesItsDisplayFindsRefuge)
{
    desk.addDisplay();
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Inbox").number(7).on({ 2 });
    desk.window(desk.app("Chat").pid(), "Chat").number(8).at({ 1500, 100, 400, 300 });
    start();

    world().activate(mail);
    EXPECT_EQ(world().activeSpace(), 2u);
    world().showSpace(1);
    world().raise(7);
    EXPECT_EQ(world().activeSpace(), 2u);
    EXPECT_EQ(world().window(8)->spaces, std::vector<std::uint64_t> { 3 });
    world().removeScreen(1);
    EXPECT_EQ(world().window(8)->spaces, std::vector<std::uint64_t> { 2 });
}

TEST_F(WorldTest, AKilledDockComesBackWithThePreferencesOfThatMoment)
{
    desk.app("Mail").pinned();
    desk.display(0).dockInset(70);
    start();
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

TEST_F(WorldTest, TheSessionsFilesOutliveTheDesktop)
{
    desk.trash({ "old.txt" });
    start();
    std::filesystem::remove(desktop().session().homeFolder() + "/.Trash/old.txt");
    stop();
    start();

    EXPECT_TRUE(std::filesystem::is_empty(desktop().session().homeFolder() + "/.Trash"));
}

TEST_F(WorldTest, ASilentApplicationNamesItsWindowsOnceItIsTold)
{
    auto mail = desk.app("Mail");
    mail->faults.needsManualAccessibility = true;
    desk.window(mail.pid(), "Inbox");
    start();

    const ElementID application { mail.pid(), ElementID::Kind::application, 0 };
    for (const std::size_t named : { 0, 1 }) {
        host::AttributeValue windows;
        desktop().accessibility().read(application, host::Attribute::windows, 0.5, windows);
        EXPECT_EQ(std::get<std::vector<ElementID>>(windows).size(), named);
        desktop().accessibility().write(application, host::Attribute::manualAccessibility, 0.5, true);
    }
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

TEST_F(WorldTest, AWindowKeepsToTheSizesThatItTakes)
{
    const pid_t mail = desk.app("Mail").pid();
    desk.window(mail, "Small").number(7)->faults.minimumSize = CGSize { 300, 0 };
    start();

    world().setBounds(7, { 0, 30, 200, 200 });

    EXPECT_EQ(world().window(7)->bounds, (CGRect { 0, 30, 300, 200 }));
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
