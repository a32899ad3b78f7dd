#include "appkit/RunLoopDriver.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>

/// The toolkit's timer for the block that is due first.
class RunLoopDriver::Alarm final : public QObject {
public:
    Alarm()
    {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.callOnTimeout([this] {
            RunLoop::main().runDue();
            arm();
        });
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, [this] { goRound(); });
        RunLoop::main().setWaker([this] { wake(); });
        RunLoop::main().setRunner(run);
        arm();
    }

    ~Alarm() override
    {
        RunLoop::main().setWaker(nullptr);
        RunLoop::main().setRunner(nullptr);
    }

private:
    /// The program's end ends it too.
    static void run(double seconds)
    {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void wake()
    {
        if (QThread::currentThread() == thread())
            arm();
        else
            QMetaObject::invokeMethod(
                this, [this] { arm(); }, Qt::QueuedConnection);
    }

    /// A loop of the toolkit goes round. A turn that is open now belongs to a loop further out, where the timer may be
    /// in the middle of going off.
    void goRound()
    {
        RunLoop::Turn::endAll();
        arm();
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

RunLoopDriver::RunLoopDriver()
    : alarm_(std::make_unique<Alarm>())
{
}

RunLoopDriver::~RunLoopDriver() = default;
