#pragma once

#include "freedesktop/LastingBus.h"

#include <gio/gio.h>

#include <functional>

namespace freedesktop {

/// Who owns a name on the session bus, whenever somebody does: what it tells by one signal, and what it answers. It
/// isn't started. Main thread.
class BusService {
public:
    struct Address {
        const char* name;
        const char* path;
        const char* interfaceName;
    };
    struct Signal {
        const char* name;
        /// What its first argument must be; null for anything.
        const char* firstArgument;
    };
    using Answered = std::function<void(GVariant* answer)>;

    BusService(LastingBus& bus, const Address& address, const Signal& signal);
    ~BusService();
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;

    /// Calls a method, while it is there. Nothing is heard of an answer that is an error, of another type, or comes
    /// after its owner or this has gone. Takes the arguments.
    void ask(
        const char* interfaceName, const char* method, GVariant* arguments, const char* answerType, Answered answered);

    std::function<void()> onAppeared;
    /// It, or the bus, has gone or isn't there to begin with.
    std::function<void()> onVanished;
    std::function<void(GVariant* arguments)> onSignal;

private:
    static void appeared(GDBusConnection* bus, const char* name, const char* owner, gpointer self);
    static void vanished(GDBusConnection* bus, const char* name, gpointer self);
    static void heard(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* arguments, gpointer self);
    static void answered(GObject* bus, GAsyncResult* result, gpointer block);

    void watch(GDBusConnection* bus);
    void stopWatching();
    void stopListening();

    Address address_;
    Signal signal_;
    guint watch_ = 0;
    /// While it is there.
    GDBusConnection* bus_ = nullptr;
    guint subscription_ = 0;
    GCancellable* cancellable_ = nullptr;
};

}
