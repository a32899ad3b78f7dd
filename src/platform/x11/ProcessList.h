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
    /// The windows that hiding a process iconified, and their desktops.
    using Taken = std::unordered_map<xcb_window_t, std::uint32_t>;
    using Windows = std::vector<const WindowRecord*>;

    std::vector<std::pair<pid_t, Windows>> owners() const;
    const Identity& identityOf(pid_t pid, const Windows& windows);
    Identity identify(const WindowRecord& window);
    std::shared_ptr<const IconSource> drawnIcon(const WindowRecord& window);
    bool isHidden(pid_t pid, const Windows& windows);
    host::Process describe(pid_t pid, const Windows& windows);
    std::vector<host::Process> describeAll();
    Events adopt(std::vector<host::Process> processes);

    Connection& connection_;
    const WindowMirror& mirror_;
    WindowManager& manager_;
    freedesktop::InstalledApplications& applications_;
    std::optional<pid_t> otherInstance_;
    std::function<void()> updateSoon_;
    std::vector<std::shared_ptr<const host::Process>> running_;
    std::unordered_map<pid_t, Identity> identities_;
    std::unordered_map<pid_t, Taken> taken_;
    std::optional<pid_t> frontmost_;
    std::atomic<pid_t> finder_ = 0;
};

}
