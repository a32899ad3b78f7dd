#include "appkit/NSApplication.h"

#include "appkit/NSScreen.h"
#include "appkit/NSWorkspace.h"
#include "base/Clock.h"
#include "base/RunLoop.h"
#include "foundation/NSFileHandle.h"
#include "host/Desktop.h"
#include "host/Displays.h"
#include "host/OpenDesktop.h"
#include "host/Surfaces.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace {

/// Has the toolkit's event loop run the main run loop's blocks when they are due.
class RunLoopDriver final : public QObject {
public:
    RunLoopDriver()
    {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.callOnTimeout([this] {
            RunLoop::main().runDue();
            arm();
        });
        RunLoop::main().setWaker([this] { wake(); });
        arm();
    }

    ~RunLoopDriver() override { RunLoop::main().setWaker(nullptr); }

private:
    void wake()
    {
        if (QThread::currentThread() == thread())
            arm();
        else
            QMetaObject::invokeMethod(
                this, [this] { arm(); }, Qt::QueuedConnection);
    }

    void arm()
    {
        const auto due = RunLoop::main().nextDue();
        if (!due) {
            timer_.stop();
            return;
        }
        // A timer that fires begins anew before the others are looked at; the toolkit's is set once for all of them.
        if (timer_.isActive() && armedFor_ == *due)
            return;
        armedFor_ = *due;
        const std::uint64_t now = RunLoop::main().clock().nanoseconds();
        const std::uint64_t wait = *due > now ? (*due - now + 999'999) / 1'000'000 : 0;
        timer_.start(static_cast<int>(std::min<std::uint64_t>(wait, 3'600'000)));
    }

    QTimer timer_;
    /// What the toolkit's timer waits for while it is active, in nanoseconds of the clock.
    std::uint64_t armedFor_ = 0;
};

bool isApplicationActive = false;

}

NSApplication::NSApplication()
{
    if (!host::Desktop::hasCurrent())
        host::Desktop::setCurrent(&host::openDesktop());
    host::Desktop& desktop = host::Desktop::current();
    desktop.displays().onChange
        = [] { NSNotificationCenter::defaultCenter().post(NSApplicationDidChangeScreenParametersNotification); };
    desktop.onLost = [this](const std::string& reason) {
        NSFileHandle::writeToStandardError("vantry: " + reason + "\n");
        terminate();
    };
    NSWorkspace::sharedWorkspace().followDesktop();
}

NSApplication& NSApplication::sharedApplication()
{
    static NSApplication application;
    return application;
}

/// An accessory has no entry among the running applications and no menu bar; the desktops list this program so.
void NSApplication::setActivationPolicy(int) { }

void NSApplication::run()
{
    const RunLoopDriver driver;
    {
        const RunLoop::Turn turn;
        delegate_->applicationDidFinishLaunching();
    }
    if (!terminated_)
        QCoreApplication::exec();
}

void NSApplication::terminate()
{
    if (terminated_)
        return;
    terminated_ = true;
    delegate_->applicationWillTerminate();
    QCoreApplication::exit(0);
}

bool NSApplication::isActive()
{
    return isApplicationActive;
}

void NSApplication::activate()
{
    isApplicationActive = true;
}

void NSApplication::deactivate()
{
    isApplicationActive = false;
    host::Desktop::current().surfaces().giveBackKeyboard();
}
