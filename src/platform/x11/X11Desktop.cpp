#include "x11/X11Desktop.h"

#include "base/Clock.h"
#include "base/Pending.h"
#include "base/RunLoop.h"
#include "freedesktop/Agents.h"
#include "freedesktop/Badges.h"
#include "freedesktop/LoginItem.h"
#include "freedesktop/PanelFollower.h"
#include "freedesktop/Tools.h"
#include "freedesktop/UserSession.h"
#include "x11/BarSurface.h"
#include "x11/DesktopScale.h"
#include "x11/Instance.h"
#include "x11/Keyboard.h"
#include "x11/PointerWatch.h"
#include "x11/ServerLoss.h"
#include "x11/StartupNotice.h"
#include "x11/StatusItems.h"
#include "x11/ToolkitConnection.h"
#include "x11/WindowCapture.h"
#include "x11/WindowElements.h"
#include "x11/WindowList.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <set>

namespace x11 {
namespace {

/// So often a batch is read on before what it amounts to is told, even while more keeps coming.
constexpr int mostPasses = 16;
/// How long titles that changed wait for more, in seconds.
constexpr double titleDelay = 0.1;
/// How long no event is read after a batch of titles and nothing else, in seconds: half a frame.
constexpr double titleRest = 0.008;
/// After a batch that was told, no event is read for a frame; while each such rest ends with more to tell, for longer
/// and longer, up to a bound. In seconds. So a first piece of news is told at once, and a crowd of them leaves the
/// program and the server their time.
constexpr double firstRest = 0.016;
/// A window that opens is news in some steps, which are all told at once: so many, before what follows counts as a
/// crowd. After so long without news, in nanoseconds, the next is the first again.
constexpr int tellingsAtOnce = 6;
constexpr std::uint64_t quiet = 40'000'000;
constexpr double longestRest = 0.1;
/// The session bus is left alone while the program starts, in seconds.
constexpr double busDelay = 0.5;

std::uint64_t now()
{
    return RunLoop::main().clock().nanoseconds();
}

/// Input comes over the toolkit's connection and may overtake what came before it on ours. So that a click acts on what
/// the user saw, ours is read first.
class BeforeInput final : public QObject {
public:
    explicit BeforeInput(std::function<void()> catchUp)
        : catchUp_(std::move(catchUp))
    {
        qGuiApp->installEventFilter(this);
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto type = event->type();
        const bool isInput = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick
            || type == QEvent::MouseButtonRelease || type == QEvent::KeyPress;
        // A widget gets it after its window.
        if (isInput && watched->isWindowType())
            catchUp_();
        return false;
    }

    std::function<void()> catchUp_;
};

class X11Desktop final : public host::Desktop {
public:
    explicit X11Desktop(std::unique_ptr<Connection> connection)
        : connection_(std::move(connection))
    {
        mirror_.start();
        monitors_.start();
        readUntilSettled();
        monitors_.update();
        processes_.update();
        mirror_.takeChanges();
        // A new user's files first: what panels tell goes into them.
        session_.preferencesFolder();
        followPanels();
        surfaces_.followDesktop(false);
        connection_->onFlushed = [this] { drainSoon(); };
        applications_.bringForward = [this](const std::string& path, const std::string& identifier) {
            return processes_.bringForward(path, identifier);
        };
        // The toolkit's event loop may not be there yet.
        start_.schedule(0, [this] { listen(); });
        busStart_.schedule(busDelay, [this] {
            bus_.connect();
            freedesktop::Agents::followMovedTools();
        });
    }

    host::Displays& displays() override { return monitors_; }
    host::Processes& processes() override { return processes_; }
    host::Applications& applications() override { return applications_; }
    host::Windows& windows() override { return windows_; }
    host::Badges& badges() override { return badges_; }
    host::Accessibility& accessibility() override { return elements_; }
    host::Pointer& pointer() override { return pointer_; }
    host::Keyboard& keyboard() override { return keyboard_; }
    host::Surfaces& surfaces() override { return surfaces_; }
    host::Capture& capture() override { return capture_; }
    host::Session& session() override { return session_; }
    host::Tools& tools() override { return tools_; }
    host::LoginItem& loginItem() override { return loginItem_; }
    host::StatusItems& statusItems() override { return statusItems_; }

private:
    void listen()
    {
        notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(*connection_), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { drain(); });
        beforeInput_ = std::make_unique<BeforeInput>([this] { catchUp(); });
        quietenToolkit(connection_->root());
        serverLoss_ = std::make_unique<ServerLoss>(*connection_, [this] { lose(); });
        drain();
    }

    void drainSoon()
    {
        soon_.schedule(0, [this] { drain(); });
    }

    void updateProcessesSoon()
    {
        areProcessesStale_ = true;
        drainSoon();
    }

    /// Takes what the server has sent, follows it up, and tells the layer what it amounts to. What comes meanwhile is
    /// left for the next time as soon as there is anything to tell; whether there was.
    bool drain()
    {
        return follow([this] {
            for (int pass = 0; readOnce(); ++pass) {
                if (pass == mostPasses)
                    return drainSoon();
                if (mirror_.hasNews() && lastRest_ > 0)
                    return;
            }
        });
    }

    /// The same, to the last of it.
    void catchUp()
    {
        follow([this] { readUntilSettled(); });
    }

    template <class Read>
    bool follow(Read read)
    {
        const RunLoop::Turn turn;
        const std::uint64_t start = now();
        const std::uint64_t before = mirror_.changeCount();
        read();
        if (connection_->isLost()) {
            lose();
            return false;
        }
        const bool hasTold = tell();
        surfaces_.windowsMoved();
        pointer_.report([this](const PointerWatch::Place& place) {
            return surfaces_.owns(place.over) ? !place.isButtonDown : !surfaces_.isAnyAt(place.point);
        });
        if (mirror_.hasStaleTitles())
            titles_.schedule(titleDelay, [this] {
                mirror_.refreshTitles();
                drain();
            });
        if (hasTold)
            tellings_ = start - lastTold_ > quiet ? 1 : tellings_ + 1;
        if (hasTold)
            lastTold_ = now();
        if (hasTold && tellings_ <= tellingsAtOnce && lastRest_ == 0) {
            // An icon may have been asked for, and events may have come with it.
            drainSoon();
        } else if (hasTold) {
            lastRest_ = lastRest_ == 0 ? firstRest : std::min(2 * lastRest_, longestRest);
            rest(std::max(lastRest_, static_cast<double>(now() - start) * 1e-9));
        } else if (mirror_.hasStaleTitles() && mirror_.changeCount() != before) {
            rest(titleRest);
        }
        return hasTold;
    }

    /// What changes without end wakes the program no more than so often.
    void rest(double seconds)
    {
        if (!notifier_)
            return;
        notifier_->setEnabled(false);
        rest_.schedule(seconds, [this] {
            if (notifier_)
                notifier_->setEnabled(true);
            // Asking the server for something may have taken events along, which wake nobody.
            if (drain())
                return;
            lastRest_ = 0;
            tellings_ = 0;
        });
    }

    void readUntilSettled()
    {
        for (int pass = 0; pass < mostPasses; ++pass) {
            if (!readOnce())
                return;
        }
        drainSoon();
    }

    /// Whether the server was asked for anything, so that more may have come.
    bool readOnce()
    {
        while (const Event event = connection_->nextEvent()) {
            RunLoop::main().hurry();
            mirror_.handle(*event);
            monitors_.handle(*event);
            scale_.handle(*event);
            pointer_.handle(*event);
            keyboard_.handle(*event);
            statusItems_.handle(*event);
        }
        const bool hasAskedOfWindows = mirror_.refresh();
        const bool hasAskedOfScale = scale_.refresh();
        if (hasAskedOfScale)
            monitors_.setScale(scale_.value());
        const bool hasAskedOfMonitors = monitors_.refresh() || hasAskedOfScale;
        const bool hasAskedOfKeyboard = keyboard_.refresh();
        isDisplayStale_ |= hasAskedOfMonitors;
        return hasAskedOfWindows || hasAskedOfMonitors || hasAskedOfKeyboard;
    }

    /// Whether there was anything to tell.
    bool tell()
    {
        const auto changes = mirror_.takeChanges();
        const bool hasNewDisplays = (std::exchange(isDisplayStale_, false) || changes.struts) && monitors_.update();
        // A panel's pixels follow before whoever owns it is told where it belongs.
        surfaces_.followDesktop(hasNewDisplays);
        if (hasNewDisplays && monitors_.onChange)
            monitors_.onChange();

        if (changes.listing)
            followPanels();
        const bool hasNewProcesses = std::exchange(areProcessesStale_, false) || changes.listing || changes.active;
        bool hasActivated = false;
        if (hasNewProcesses) {
            for (const auto& [event, process] : processes_.update()) {
                hasActivated |= event == host::ProcessEvent::activated;
                if (processes_.onEvent)
                    processes_.onEvent(event, process);
            }
        }
        const bool hasNewWindows = changes.listing || changes.desktops || (changes.active && !hasActivated);
        if (hasNewWindows && windows_.onChange)
            windows_.onChange();
        return hasNewDisplays || hasNewProcesses || hasNewWindows;
    }

    void followPanels()
    {
        std::set<pid_t> owners;
        for (const WindowRecord* window : mirror_.state().appearance)
            if (window->facts.declaredKind == WindowKind::dock && window->pid != getpid())
                owners.insert(window->pid);
        panels_.setOwners(owners);
    }

    void lose()
    {
        if (!notifier_)
            return;
        notifier_.reset();
        if (onLost)
            onLost("the X server closed the connection");
    }

    std::unique_ptr<Connection> connection_;
    WindowMirror mirror_ { *connection_ };
    WindowManager manager_ { *connection_, mirror_ };
    freedesktop::InstalledApplications applications_ { startupNotice() };
    Monitors monitors_ { *connection_, mirror_ };
    DesktopScale scale_ { *connection_ };
    Instance instance_ { *connection_ };
    ProcessList processes_ { *connection_, mirror_, manager_, applications_, instance_.other(),
        [this] { updateProcessesSoon(); } };
    WindowList windows_ { mirror_, monitors_ };
    freedesktop::LastingBus bus_;
    freedesktop::Badges badges_ { bus_, applications_.entries(), freedesktop::StandIns::dock };
    WindowElements elements_ { mirror_, manager_, processes_ };
    PointerWatch pointer_ { *connection_, monitors_, [this] { drainSoon(); } };
    Keyboard keyboard_ { *connection_, [this] { drainSoon(); } };
    BarSurface surfaces_ { *connection_, mirror_, monitors_, manager_ };
    WindowCapture capture_ { mirror_ };
    freedesktop::UserSession session_ { bus_ };
    freedesktop::PanelFollower panels_ { applications_.entries() };
    freedesktop::Tools tools_;
    freedesktop::LoginItem loginItem_;
    StatusItems statusItems_ { bus_, *connection_, monitors_, [this] { drainSoon(); } };

    bool isDisplayStale_ = false;
    /// Whether a process was asked for something since they were last looked at.
    bool areProcessesStale_ = false;
    /// 0 when the last one ended with nothing to tell.
    double lastRest_ = 0;
    int tellings_ = 0;
    std::uint64_t lastTold_ = 0;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::unique_ptr<BeforeInput> beforeInput_;
    std::unique_ptr<ServerLoss> serverLoss_;
    Pending start_;
    Pending busStart_;
    Pending soon_;
    Pending titles_;
    Pending rest_;
};

}

std::unique_ptr<host::Desktop> openX11Desktop(std::string& reason)
{
    auto connection = Connection::open(reason);
    return connection ? std::make_unique<X11Desktop>(std::move(connection)) : nullptr;
}

}
