#include "freedesktop/SessionBus.h"

#include <cstdlib>
#include <filesystem>
#include <functional>

namespace freedesktop {
namespace {

/// A wait for a bus in a loop of its own, so that nothing else goes on meanwhile.
struct BusWait {
    using Finish = GDBusConnection* (*)(GAsyncResult* result);

    Finish finish;
    bool hasEnded = false;
    GDBusConnection* bus = nullptr;
    GCancellable* cancellable = g_cancellable_new();
};

void onBus(GObject*, GAsyncResult* result, gpointer data)
{
    auto& wait = *static_cast<BusWait*>(data);
    wait.bus = wait.finish(result);
    wait.hasEnded = true;
}

gboolean giveUp(gpointer data)
{
    g_cancellable_cancel(static_cast<BusWait*>(data)->cancellable);
    return G_SOURCE_REMOVE;
}

/// `begin` asks for the bus, and has `onBus` called.
GDBusConnection* waitFor(int milliseconds, const std::function<void(BusWait&)>& begin, BusWait::Finish finish)
{
    GMainContext* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    BusWait wait { finish };
    GSource* limit = g_timeout_source_new(static_cast<guint>(milliseconds));
    g_source_set_callback(limit, giveUp, &wait, nullptr);
    g_source_attach(limit, context);
    begin(wait);
    while (!wait.hasEnded)
        g_main_context_iteration(context, TRUE);
    g_source_destroy(limit);
    g_source_unref(limit);
    g_object_unref(wait.cancellable);
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
    if (wait.bus)
        g_dbus_connection_set_exit_on_close(wait.bus, FALSE);
    return wait.bus;
}

}

bool hasSessionBus()
{
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    std::error_code error;
    return std::filesystem::exists(std::string(g_get_user_runtime_dir()) + "/bus", error);
}

GDBusConnection* sessionBus(int milliseconds)
{
    if (!hasSessionBus())
        return nullptr;
    return waitFor(
        milliseconds, [](BusWait& wait) { g_bus_get(G_BUS_TYPE_SESSION, wait.cancellable, onBus, &wait); },
        [](GAsyncResult* result) { return g_bus_get_finish(result, nullptr); });
}

GDBusConnection* busAt(const std::string& address, int milliseconds)
{
    return waitFor(
        milliseconds,
        [&](BusWait& wait) {
            g_dbus_connection_new_for_address(address.c_str(), busClient, nullptr, wait.cancellable, onBus, &wait);
        },
        [](GAsyncResult* result) { return g_dbus_connection_new_for_address_finish(result, nullptr); });
}

}
