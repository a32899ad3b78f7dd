#pragma once

#include "freedesktop/LastingBus.h"

#include <gio/gio.h>

#include <functional>
#include <optional>

namespace freedesktop {

/// Whether a panel shows the status items that programs tell of on the session bus. Main thread.
class NotifierHost {
public:
    explicit NotifierHost(LastingBus& bus);
    ~NotifierHost();
    NotifierHost(const NotifierHost&) = delete;
    NotifierHost& operator=(const NotifierHost&) = delete;

    /// Absent until it is known, and while whoever should know doesn't answer.
    std::optional<bool> isThere() const { return isThere_; }

    std::function<void()> onChange;

private:
    static void onAppeared(GDBusConnection* bus, const char* name, const char* owner, gpointer self);
    static void onVanished(GDBusConnection* bus, const char* name, gpointer self);
    static void onAnswer(GObject* bus, GAsyncResult* result, gpointer self);
    static void onSignal(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void watch(GDBusConnection* bus);
    void stopWatching();
    void listen(GDBusConnection* bus);
    void stopListening();
    void ask();
    void set(std::optional<bool> isThere);

    guint watch_ = 0;
    GDBusConnection* bus_ = nullptr;
    guint subscription_ = 0;
    GCancellable* cancellable_ = nullptr;
    std::optional<bool> isThere_;
};

}
