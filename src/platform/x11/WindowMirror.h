#pragma once

#include "x11/Burst.h"
#include "x11/Connection.h"
#include "x11/DesktopState.h"

#include <mutex>
#include <unordered_map>
#include <unordered_set>

namespace x11 {

/// Keeps `DesktopState` true: reads every window once when it appears, and from then on follows the server's events. It
/// is written on the main thread alone, which therefore reads it freely; other threads read under its lock.
class WindowMirror {
public:
    /// What has changed since it was last asked.
    struct Changes {
        /// Windows came, went, or are listed in another way.
        bool listing = false;
        /// Another desktop is in front, or there are more or fewer.
        bool desktops = false;
        bool active = false;
        bool struts = false;
        bool compositor = false;
    };

    explicit WindowMirror(Connection& connection);
    WindowMirror(const WindowMirror&) = delete;
    WindowMirror& operator=(const WindowMirror&) = delete;

    /// Selects the events, and marks everything as to be read.
    void start();
    void handle(const xcb_generic_event_t& event);
    /// Another number when anything may have changed. Main thread.
    std::uint64_t changeCount() const { return eventCount_ + lastRevision_; }
    /// Another number when a window was listed, unlisted, or is otherwise described. Main thread.
    std::uint64_t windowChangeCount() const { return lastRevision_; }
    /// Asks the server for what events have left open; false when there was nothing. Afterwards more events can have
    /// come.
    bool refresh();
    /// Whether it has changed which windows and desktops there are or which one is active.
    bool hasNews() const { return changes_.listing || changes_.desktops || changes_.active; }
    Changes takeChanges() { return std::exchange(changes_, {}); }

    /// Titles that changed are read with the next thing there is to ask, or when this is called: once for many changes.
    bool hasStaleTitles() const { return !staleTitles_.empty(); }
    void refreshTitles();

    void setPoints(const Points& points);

    const DesktopState& state() const { return state_; }
    /// Any thread.
    template <class Reader>
    auto read(Reader reader) const
    {
        const std::lock_guard lock(mutex_);
        return reader(state_);
    }

private:
    enum RootStale : unsigned {
        staleManager = 1,
        staleClients = 2,
        staleDesktops = 4,
        staleActive = 8,
        staleCompositor = 16,
        staleTree = 32,
        staleAll = 63,
    };
    using PropertyBits = std::uint32_t;

    void handleRootProperty(xcb_atom_t atom);
    void handleClientProperty(xcb_window_t window, xcb_atom_t atom);
    void handleConfigure(const xcb_configure_notify_event_t& event);
    void handleMapped(xcb_window_t reporter, xcb_window_t window, bool isMapped);
    void handleReparent(const xcb_reparent_notify_event_t& event);
    void handleDestroy(xcb_window_t window);

    bool readManager();
    bool readRoot();
    void askClients(Burst& burst);
    void askDesktops(Burst& burst);
    void askActive(Burst& burst);
    void askCompositor(Burst& burst);
    void askTree(Burst& burst);

    bool readChildren();
    void askChild(Burst& burst, xcb_window_t child);
    bool readWindows();
    std::vector<xcb_window_t> wanted() const;
    void followWanted(Burst& burst);
    void askPid(Burst& burst, xcb_window_t window);
    void askMapped(Burst& burst, xcb_window_t window);
    void askProperties(Burst& burst, xcb_window_t window, PropertyBits which);
    void findFrames();
    void settlePid(WindowRecord& window);
    pid_t namelessPid(xcb_window_t window);
    /// For a window that has just joined the others.
    std::size_t takeSlot();
    void setFrame(WindowRecord& window, xcb_window_t frame);
    void setOwner(WindowRecord& window, pid_t pid);
    void disown(const WindowRecord& window);
    /// Something that the window is listed with has changed.
    void touch(WindowRecord& window) { window.revision = ++lastRevision_; }
    void touchClientsIn(xcb_window_t frame);

    void forget(xcb_window_t window);
    void setActive(xcb_window_t window);
    void lookAt(WindowRecord& window);

    Connection& connection_;
    const std::string host_;
    mutable std::mutex mutex_;
    DesktopState state_;
    Changes changes_;

    unsigned staleRoot_ = 0;
    bool isWantedStale_ = false;
    /// The root's children that are to be asked for where they are.
    std::vector<xcb_window_t> staleChildren_;
    /// By window, a bit for each entry of the table of properties.
    std::unordered_map<xcb_window_t, PropertyBits> staleProperties_;
    std::unordered_map<xcb_window_t, PropertyBits> staleTitles_;
    std::unordered_set<xcb_window_t> staleFrames_;

    /// The window manager's list, in the order in which windows were mapped.
    std::vector<xcb_window_t> managedClients_;
    /// The active window as it was last told, also one that isn't known here yet.
    xcb_window_t announcedActive_ = XCB_WINDOW_NONE;
    std::unordered_map<std::uint32_t, pid_t> namelessPids_;
    bool wasWarned_ = false;
    std::uint64_t lastRevision_ = 0;
    std::uint64_t lastAppearance_ = 0;
    std::vector<std::size_t> freeSlots_;
    std::uint64_t eventCount_ = 0;
};

}
