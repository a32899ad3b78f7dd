#include "freedesktop/SessionBus.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace freedesktop {
namespace {

/// A wait for the bus in a loop of its own, so that nothing else goes on meanwhile.
struct BusWait {
    bool hasEnded = false;
    GDBusConnection* bus = nullptr;
    GCancellable* cancellable = g_cancellable_new();
};

void onBus(GObject*, GAsyncResult* result, gpointer data)
{
    auto& wait = *static_cast<BusWait*>(data);
    wait.bus = g_bus_get_finish(result, nullptr);
    wait.hasEnded = true;
}

gboolean giveUp(gpointer data)
{
    g_cancellable_cancel(static_cast<BusWait*>(data)->cancellable);
    return G_SOURCE_REMOVE;
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
    GMainContext* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    BusWait wait;
    GSource* limit = g_timeout_source_new(static_cast<guint>(milliseconds));
    g_source_set_callback(limit, giveUp, &wait, nullptr);
    g_source_attach(limit, context);
    g_bus_get(G_BUS_TYPE_SESSION, wait.cancellable, onBus, &wait);
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
