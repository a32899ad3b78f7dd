#pragma once

#include "base/Pending.h"

#include <gio/gio.h>

#include <functional>
#include <utility>
#include <vector>

namespace freedesktop {

/// A connection of our own to the session bus, which is opened again when it was lost. Main thread.
class LastingBus {
public:
    struct Listener {
        std::function<void(GDBusConnection*)> opened;
        /// The connection that was opened last is closed; or there is no bus to begin with.
        std::function<void()> gone;
    };

    LastingBus() = default;
    ~LastingBus();
    LastingBus(const LastingBus&) = delete;
    LastingBus& operator=(const LastingBus&) = delete;

    /// Before `connect`.
    void add(Listener listener) { listeners_.push_back(std::move(listener)); }
    /// Begins to open it, if the session has a bus. Returns at once.
    void connect();

private:
    static void onOpened(GObject*, GAsyncResult* result, gpointer self);
    static void onClosed(GDBusConnection*, gboolean isRemote, GError*, gpointer self);

    void open();
    void openLater();
    void forget();
    void tellGone();

    std::vector<Listener> listeners_;
    GCancellable* cancellable_ = nullptr;
    GDBusConnection* bus_ = nullptr;
    /// Seconds.
    double patience_ = 0;
    Pending retry_;
};

}
