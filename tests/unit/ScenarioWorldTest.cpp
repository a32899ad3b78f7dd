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
