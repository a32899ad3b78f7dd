#pragma once

#include "freedesktop/StandIns.h"
#include "host/Processes.h"
#include "x11/WindowManager.h"

#include <atomic>
#include <unordered_map>

namespace x11 {

/// The running applications: the processes that own listed windows, our own, and stand-ins for the Dock and, while the
/// application that opens folders has no window, for the Finder.
class ProcessList final : public host::Processes {
public:
    /// `otherInstance` is the process of this program that was there before. `updateSoon` has `update` called from the
    /// run loop.
    ProcessList(Connection& connection, const WindowMirror& mirror, WindowManager& manager,
        freedesktop::InstalledApplications& applications, std::optional<pid_t> otherInstance,
        std::function<void()> updateSoon);

    const std::vector<std::shared_ptr<const host::Process>>& running() override { return running_; }
    std::shared_ptr<const host::Process> find(pid_t pid) override;
    std::optional<pid_t> frontmost() override { return frontmost_; }
    bool activate(pid_t pid) override;
    bool hide(pid_t pid) override;
    bool unhide(pid_t pid) override;
    bool terminate(pid_t pid) override;
    /// What opening an application does that runs with windows as that bundle or by that identifier. False where none
    /// does.
    bool bringForward(const std::string& bundlePath, const std::string& identifier);
    bool forceTerminate(pid_t pid) override;

    using Events = std::vector<std::pair<host::ProcessEvent, std::shared_ptr<const host::Process>>>;
    /// Follows the mirror, and tells what that changed. Asks the server for icons where there are no others.
    Events update();
    /// The process that stands for the Finder; 0 when there is none. Any thread.
    pid_t finder() const { return finder_; }

private:
    /// How a process is shown. It stays while the window that speaks for it keeps its class.
    struct Identity {
        std::string className;
        std::string instanceName;
        std::optional<std::string> identifier;
        std::optional<std::string> bundlePath;
        std::string name;
        std::shared_ptr<const IconSource> icon;
    };
    /// A window that hiding its process iconified, and how it was.
    struct TakenWindow {
        std::uint32_t desktop = 0;
        /// How many windows were in front of it.
        std::size_t depth = 0;
        bool wasActive = false;
        /// Whether it has been seen to be iconified.
        bool isAway = false;
    };
    using Taken = std::unordered_map<xcb_window_t, TakenWindow>;

    std::vector<pid_t> owners() const;
    const Identity& identityOf(const WindowRecord& speaker);
    Identity identify(const WindowRecord& window);
    std::shared_ptr<const IconSource> drawnIcon(const WindowRecord& window);
    bool isHidden(pid_t pid);
    host::Process describe(const WindowRecord& speaker);
    std::vector<host::Process> describeAll();
    Events adopt(std::vector<host::Process> processes);
    void orderReturning();
    void insistOnFront();
    void bringToFront(xcb_window_t window) const;

    Connection& connection_;
    const WindowMirror& mirror_;
    WindowManager& manager_;
    freedesktop::InstalledApplications& applications_;
    std::optional<pid_t> otherInstance_;
    std::function<void()> updateSoon_;
    std::vector<std::shared_ptr<const host::Process>> running_;
    std::unordered_map<pid_t, std::shared_ptr<const host::Process>> byPid_;
    std::unordered_map<pid_t, Identity> identities_;
    std::unordered_map<pid_t, Taken> taken_;
    /// Those given back since the last update.
    Taken returning_;
    /// Those last given back, and which of them belongs in front.
    struct Returned {
        Taken windows;
        xcb_window_t front = XCB_WINDOW_NONE;
        /// Nanoseconds of the clock.
        std::uint64_t at = 0;
        std::optional<std::uint64_t> inFrontSince {};
    };
    std::optional<Returned> returned_;
    std::optional<pid_t> frontmost_;
    /// The process that was last asked to come forward, until one does.
    std::optional<pid_t> asked_;
    std::atomic<pid_t> finder_ = 0;
};

}
