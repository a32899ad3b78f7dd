#include "base/RunLoop.h"
#include "appkit/NSPanel.h"
#include "appkit/NSView.h"
#include "appkit/RunLoopDriver.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSTimer.h"
#include "foundation/PreferenceDomain.h"
#include "support/ManualClock.h"

#include <QEventLoop>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <QtTest/qtestmouse.h>

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace {

class RunLoopTest : public testing::Test {
protected:
    RunLoopTest() { RunLoop::main().setClock(&clock); }
    ~RunLoopTest() override
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(nullptr);
    }

    auto note(const std::string& what)
    {
        return [this, what] { log.push_back(what); };
    }

    ManualClock clock;
    std::vector<std::string> log;
};

TEST_F(RunLoopTest, BlocksRunInTheOrderOfTheirTimesWhateverQueueTheyCameBy)
{
    const auto serial = DispatchQueue::serial("com.example.serial");
    RunLoop::main().schedule(0.13, [&] { RunLoop::main().schedule(0.05, note("chained")); });
    RunLoop::main().schedule(0.3, note("late"));
    serial->asyncAfter(0.2, note("serial"));
    NSTimer::scheduledTimer(0.1, false, note("timer"));
    DispatchQueue::main().async(note("now"));
    DispatchQueue::global().async(note("now too"));
    clock.advance(0.25);
    EXPECT_EQ(log, (std::vector<std::string> { "now", "now too", "timer", "chained", "serial" }));
}

TEST_F(RunLoopTest, ATolerantTimerWaitsForCompanyUntilSomethingHappensOrItsTimeIsOver)
{
    int fired = 0;
    const auto timer = NSTimer::scheduledTimer(0.5, true, [&] { ++fired; });
    timer->setTolerance(1.0);
    const auto due = [this] { return static_cast<double>(*RunLoop::main().nextDue() - clock.nanoseconds()) / 1e9; };
    EXPECT_DOUBLE_EQ(due(), 1.5) << "alone it is late";
    RunLoop::main().schedule(0.7, note("company"));
    clock.advance(0.7);
    EXPECT_EQ(fired, 1) << "with company it is as late as that";
    EXPECT_DOUBLE_EQ(due(), 1.3) << "and then keeps to its multiples";
    RunLoop::main().hurry();
    EXPECT_DOUBLE_EQ(due(), 0.3);
    clock.advance(0.3);
    EXPECT_EQ(fired, 2);
    timer->setTolerance(0);
    EXPECT_DOUBLE_EQ(due(), 0.5);
    timer->invalidate();
    EXPECT_FALSE(RunLoop::main().nextDue());

    std::shared_ptr<NSTimer> last;
    last = NSTimer::scheduledTimer(0.5, true, [&] {
        if (++fired == 5)
            last->invalidate();
    });
    clock.advance(10);
    EXPECT_EQ(fired, 5) << "one that invalidates itself";
    EXPECT_FALSE(last->isValid());
}

struct PressedView final : NSView {
    using NSView::NSView;
    void mouseUp(const NSEvent&) override { onMouseUp(); }

    std::function<void()> onMouseUp;
};

/// On the machine's clock and under the toolkit's loops: no other test waits.
TEST(NestedLoopTest, ALoopThatAnEventBeginsGoesOnWithEverythingAndOutlivesThePanelThatGotIt)
{
    std::vector<std::string> log;
    const auto note = [&](const std::string& what) { return [&log, what] { log.push_back(what); }; };
    const QTemporaryDir folder;
    PreferenceDomain settings(folder.filePath("settings.plist").toStdString());
    const auto edge = [&] { return settings.find("edge") ? *settings.find("edge")->string() : "none"; };
    auto view = std::make_shared<PressedView>(CGRect {});
    auto panel = std::make_unique<NSPanel>(CGRect { 0, 0, 90, 60 });
    panel->setContentView(view);
    panel->widget()->show();
    const QPointer<QWidget> window = panel->widget();
    const QPointer<QWidget> pressed = view->widget();

    const RunLoopDriver driver;
    QEventLoop outer;
    QTimer::singleShot(10'000, &outer, [&] { outer.exit(1); });
    view->onMouseUp = [&] {
        log.push_back("before " + edge());
        QEventLoop nested;
        QTimer::singleShot(5'000, &nested, [&] { nested.exit(1); });
        RunLoop::main().schedule(0.2, [&] {
            std::ignore = edge();
            PreferenceDomain(folder.filePath("settings.plist").toStdString()).set("edge", Value("top"));
            log.push_back("same turn " + edge());
        });
        RunLoop::main().schedule(0.3, [&] { log.push_back("next turn " + edge()); });
        RunLoop::main().schedule(0.4, [&] {
            panel.reset();
            view.reset();
        });
        std::thread([&] { DispatchQueue::main().async(note("from a thread")); }).join();
        int fired = 0;
        const auto timer = NSTimer::scheduledTimer(0.1, true, [&] {
            if (++fired == 10)
                nested.exit(0);
        });
        EXPECT_EQ(nested.exec(), 0);
        timer->invalidate();
        log.push_back("after " + edge());
    };
    std::shared_ptr<NSTimer> opener;
    opener = NSTimer::scheduledTimer(0.05, true, [&] {
        RunLoop::main().perform(note("due along with it"));
        QTest::mouseClick(view->widget(), Qt::LeftButton);
        opener->invalidate();
        RunLoop::main().perform([&] { outer.exit(0); });
    });
    EXPECT_EQ(outer.exec(), 0);
    EXPECT_EQ(log,
        (std::vector<std::string> {
            "before none", "due along with it", "from a thread", "same turn none", "next turn top", "after top" }));
    EXPECT_FALSE(window);
    EXPECT_FALSE(pressed);
}

TEST(SerialQueueTest, RunsItsBlocksInOrderOnAThreadOfItsOwn)
{
    const auto main = std::this_thread::get_id();
    std::promise<void> end;
    std::string order;
    const auto queue = DispatchQueue::serial("com.example.serial");
    queue->asyncAfter(0.02, [&] {
        order += "second";
        end.set_value();
    });
    queue->async([&] { order += std::this_thread::get_id() == main ? "here " : "first "; });
    end.get_future().wait();
    EXPECT_EQ(order, "first second");
}

TEST(NotificationCenterTest, AnObserverRemovedWhileANotificationIsPostedIsNotCalled)
{
    NSNotificationCenter center;
    std::vector<std::string> called;
    NSNotificationCenter::Token second;
    const auto first = center.addObserver("name", [&](const NSNotification&) {
        called.push_back("first");
        center.removeObserver(second);
    });
    second = center.addObserver("name", [&](const NSNotification&) { called.push_back("second"); });
    const auto other = center.addObserver("other", [&](const NSNotification&) { called.push_back("other"); });
    center.post("name");
    EXPECT_EQ(called, std::vector<std::string> { "first" });
}

}
