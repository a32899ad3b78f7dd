#pragma once

#include "embedded/Dock.h"
#include "embedded/Faults.h"
#include "embedded/Icons.h"
#include "embedded/Later.h"
#include "embedded/Notices.h"
#include "embedded/Scenario.h"
#include "embedded/Screens.h"
#include "host/LoginItem.h"
#include "host/Processes.h"

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace embedded {

/// The process identifiers that the desktop chooses begin here, above all that the system gives, so that none is also a
/// real process's.
inline constexpr pid_t firstPid = 5'000'000;

struct Window {
    std::uint32_t number = 0;
    /// Grows from window to window.
    std::int64_t appearance = 0;
    pid_t owner = 0;
    std::optional<std::string> title;
    int layer = 0;
    /// Window space.
    CGRect bounds;
    std::vector<std::uint64_t> spaces;
    bool isMinimised = false;
    bool isAccessible = true;
    bool demandsAttention = false;
    /// As in the scenario.
    std::vector<Scenario::Element> elements;
    /// What was typed into it.
    std::string typed;
    WindowFaults faults;

    /// Where it goes when it leaves full screen; present exactly while it is full-screen.
    struct Place {
        CGRect bounds;
        std::vector<std::uint64_t> spaces;
    };
    std::optional<Place> beforeFullScreen;

    bool isFullScreen() const { return beforeFullScreen.has_value(); }
    /// The menu bar's, the wallpaper's and their like.
    bool isPartOfDesktop() const { return layer < 0; }
};

struct RunningProcess {
    std::shared_ptr<const host::Process> record;
    std::optional<std::string> icon;
    ProcessFaults faults;
    /// The window that was made main last; not necessarily one that still shows.
    std::optional<std::uint32_t> mainWindow;
    bool hasManualAccessibility = false;

    pid_t pid() const { return record->pid; }
    bool isDock() const { return record->bundleIdentifier == dockIdentifier; }
};

/// The desktop's state and its rules: what a user or another program can do on it, and what follows. This is also what
/// a test scripts the desktop with. State changes at once; news of it is told at the next turn of the run loop. What
/// can't be done (no such process, no such window) is passed over. Main thread.
class World {
public:
    /// `dockPreferences` is the file of the Dock's preference domain.
    World(const Scenario& scenario, const std::string& dockPreferences, Notices& notices, Icons& icons);
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // What there is.

    const Screens& screens() const { return screens_; }
    /// In the order in which they were launched.
    const std::vector<RunningProcess>& processes() const { return processes_; }
    /// Front first. Windows of a higher layer are in front of all of a lower one, wherever they stand here.
    const std::vector<Window>& windows() const { return windows_; }
    /// In the order in which they were opened; those of the scenario as they stand in it.
    std::vector<const Window*> byAppearance() const;
    /// The windows as they lie on the screens, front first.
    std::vector<const Window*> stack() const;
    const std::vector<Scenario::Application>& applications() const { return applications_; }
    const Dock& dock() const { return dock_; }
    std::shared_ptr<const IconSource> iconNamed(const std::optional<std::string>& name) const
    {
        return icons_.find(name);
    }
    std::optional<pid_t> frontmost() const { return frontmost_; }

    const RunningProcess* process(pid_t pid) const;
    const RunningProcess* processNamed(std::string_view bundleIdentifier) const;
    const Window* window(std::uint32_t number) const;
    const Scenario::Application* application(const std::string& path) const;
    /// The process's windows, front first.
    std::vector<const Window*> windowsOf(pid_t pid) const;
    /// The main window, or the foremost that isn't minimised; null when there is none.
    const Window* focusedWindow(pid_t pid) const;
    /// Whether it shows: not minimised, not hidden, on a space that is current.
    bool isOnScreen(const Window& window) const;
    /// The space in front: of the screen with the keyboard focus. 0 without screens.
    std::uint64_t activeSpace() const;
    /// The index of the screen with the keyboard focus.
    std::optional<std::size_t> mainScreen() const;
    /// The screen's frame less the menu bar and the Dock. Screen space.
    CGRect visibleFrame(const Screen& screen) const;

    // Programs.

    /// Starts a process as described, behind the others, and gives its identifier; 0 as `pid` has one chosen.
    pid_t launch(Scenario::Process process);
    /// Another instance of this program, with that identifier.
    void launchOwnProgram(pid_t pid);
    /// Starts an installed application and brings it forward.
    pid_t launch(const Scenario::Application& application);
    /// What opening an application does: launches it, or brings the running one forward with a window to show.
    void open(const Scenario::Application& application);
    /// Launches it, or has the running one open another of its windows.
    void openAnother(const Scenario::Application& application);
    /// Ends the process and closes its windows. The Dock comes back by itself.
    void quit(pid_t pid);
    void activate(pid_t pid);
    void hide(pid_t pid);
    /// Where it is in front, whoever is next comes there.
    void giveWay(pid_t pid);
    void unhide(pid_t pid);

    // Windows.

    /// In front of all others. Gives its number.
    std::uint32_t open(Scenario::Window window);
    void close(std::uint32_t number);
    /// What a click on it does: it comes to the front, with its application.
    void focus(std::uint32_t number);
    void raise(std::uint32_t number);
    /// Its application's main window, also where it doesn't show.
    void setMain(std::uint32_t number);
    void setTitle(std::uint32_t number, std::optional<std::string> title);
    /// Window space. The window may have its own mind about its size; a full-screen one doesn't move at all.
    void setBounds(std::uint32_t number, const CGRect& bounds);
    void setMinimised(std::uint32_t number, bool minimised);
    /// A window in full screen has a space of its own.
    void setFullScreen(std::uint32_t number, bool fullScreen);
    /// The same, after the time that it takes on this desktop.
    void requestFullScreen(std::uint32_t number, bool fullScreen);
    void setSpaces(std::uint32_t number, std::vector<std::uint64_t> spaces);
    void setLayer(std::uint32_t number, int layer);
    void type(std::uint32_t number, const std::string& text);
    /// Until the user looks at it.
    void demandAttention(std::uint32_t number);

    // The desktop.

    void showSpace(std::uint64_t space);
    void addScreen(const Scenario::Display& display);
    /// Its windows move to the primary screen.
    void removeScreen(std::size_t index);
    void setScreenFrame(std::size_t index, const CGRect& frame);
    /// Absent takes the badge away.
    void setBadge(const std::string& title, std::optional<std::string> badge);
    void install(Scenario::Application application);
    void setAccessibilityPermitted(bool permitted) { accessibilityPermitted_ = permitted; }
    void setScreenCapturePermitted(bool permitted) { screenCapturePermitted_ = permitted; }
    bool isAccessibilityPermitted() const { return accessibilityPermitted_; }
    bool isScreenCapturePermitted() const { return screenCapturePermitted_; }

    /// The labels of the login agents that are loaded.
    std::set<std::string>& agents() { return agents_; }

    host::LoginItem::Status loginItem() const { return loginItem_; }
    /// What the user does in the system's settings, too.
    void setLoginItem(host::LoginItem::Status status) { loginItem_ = status; }

    // What is wrong with it, to read and to change at any time.

    DesktopFaults& faults() { return faults_; }
    ProcessFaults& processFaults(pid_t pid);
    WindowFaults& windowFaults(std::uint32_t number);
    /// That the application was told to show its windows to accessibility.
    void setManualAccessibility(pid_t pid, bool on);

private:
    RunningProcess* find(pid_t pid);
    RunningProcess* processAt(const std::string& bundlePath);
    void openWindowOf(const RunningProcess& process, const Scenario::Application& application);
    Window* find(std::uint32_t number);
    void start(Scenario::Process process);
    void startOwnPrograms();
    void startDock();
    void setFrontmost(std::optional<pid_t> pid);
    void setHidden(RunningProcess& process, bool hidden);
    std::optional<pid_t> nextFrontmost(pid_t leaving) const;
    void closeAll(pid_t owner);
    void moveToFront(std::uint32_t number);
    void noteLook();
    void bringWindowsForward(pid_t pid);
    bool showsSomewhere(const Window& window) const;
    CGSize granted(const Window& window, CGSize size) const;
    void followScreen(Window& window);
    void enterFullScreen(Window& window);
    void leaveFullScreen(Window& window);
    pid_t newPid();
    std::uint32_t newNumber();

    Notices& notices_;
    Icons& icons_;
    Screens screens_;
    Dock dock_;
    std::vector<Scenario::Application> applications_;
    std::vector<RunningProcess> processes_;
    std::vector<Window> windows_;
    std::int64_t lastAppearance_ = 0;
    std::optional<pid_t> frontmost_;
    bool accessibilityPermitted_;
    bool screenCapturePermitted_;
    std::set<std::string> agents_;
    host::LoginItem::Status loginItem_ = host::LoginItem::Status::notRegistered;
    DesktopFaults faults_;
    pid_t nextPid_ = firstPid;
    std::uint32_t nextNumber_ = 1;
    Later later_;
};

}
