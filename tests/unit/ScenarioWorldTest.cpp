#include "foundation/PreferenceDomain.h"
#include "unit/Fixture.h"

#include <atomic>
#include <thread>

using namespace embedded;
using host::ElementID;

namespace {

/// Mail's window 1 lies on the first of two displays, on the space that doesn't show, and Chat's 2 on the second.
class WorldTest : public DesktopTest {
protected:
    void SetUp() override
    {
        desk.addDisplay();
        desk.displays[0].dockInset = 70;
        desk.pinnedApp("Mail");
        desk.trash = { "old.txt" };
        mail = desk.app("Mail").pid;
        desk.window(mail, "Inbox").spaces = { 2 };
        desk.window(desk.app("Chat").pid, "Chat").bounds = { 1500, 100, 400, 300 };
        desk.windows[1].faults.minimumSize = CGSize { 300, 0 };
        start();
    }

    pid_t mail = 0;
};

TEST_F(WorldTest, WindowsComeForwardFindRefugeAndKeepToTheSizesThatTheyTake)
{
    world().activate(mail);
    EXPECT_EQ(world().activeSpace(), 2u);
    world().showSpace(1);
    world().raise(1);
    EXPECT_EQ(world().activeSpace(), 2u);
    world().setBounds(2, { 1500, 30, 200, 200 });
    EXPECT_EQ(world().window(2)->bounds, (CGRect { 1500, 30, 300, 200 }));
    EXPECT_EQ(world().window(2)->spaces, std::vector<std::uint64_t> { 3 });
    world().removeScreen(1);
    EXPECT_EQ(world().window(2)->spaces, std::vector<std::uint64_t> { 2 });
}

TEST_F(WorldTest, AKilledDockComesBackWithThePreferencesOfThatMomentAndFilesOutliveTheDesktop)
{
    const pid_t dock = world().processNamed(dockIdentifier)->pid();
    EXPECT_EQ(desktop().displays().all().front().visibleFrame.y, 70);

    auto preferences = PreferenceDomain::named(dockIdentifier);
    preferences->set("autohide", true);
    preferences->set("persistent-apps", Value::Array {});
    EXPECT_EQ(world().dock().tiles().size(), 1u);
    desktop().processes().terminate(dock);
    advance(1);

    ASSERT_TRUE(world().processNamed(dockIdentifier));
    EXPECT_NE(world().processNamed(dockIdentifier)->pid(), dock);
    EXPECT_TRUE(world().dock().tiles().empty());
    EXPECT_EQ(desktop().displays().all().front().visibleFrame.y, 0);

    std::filesystem::remove(desktop().session().homeFolder() + "/.Trash/old.txt");
    stop();
    start();
    EXPECT_TRUE(std::filesystem::is_empty(desktop().session().homeFolder() + "/.Trash"));
}

/// On the machine's clock: threads can't wait for one that stands still.
TEST_F(WorldTest, CallsOfAnotherThreadWaitForTheMainThreadUpToTheirTimeOut)
{
    RunLoop::main().setClock(nullptr);
    for (const bool mainThreadAnswers : { true, false }) {
        std::atomic<int> result = kAXErrorNotImplemented;
        std::thread caller([&] {
            const ElementID window { mail, ElementID::Kind::window, 1 };
            result = desktop().accessibility().perform(window, host::Action::raise, 0.35);
        });
        while (mainThreadAnswers && result == kAXErrorNotImplemented) {
            RunLoop::main().runDue();
            std::this_thread::yield();
        }
        caller.join();
        EXPECT_EQ(result, mainThreadAnswers ? kAXErrorSuccess : kAXErrorCannotComplete);
    }
}

}
