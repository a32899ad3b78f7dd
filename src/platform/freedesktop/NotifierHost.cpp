#include "freedesktop/NotifierHost.h"

#include <utility>

namespace freedesktop {
namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* path = "/StatusNotifierWatcher";

}

NotifierHost::NotifierHost(LastingBus& bus)
{
    bus.add({ [this](GDBusConnection* opened) { watch(opened); },
        [this] {
            stopWatching();
            set(false);
        } });
}

NotifierHost::~NotifierHost()
{
    stopWatching();
}

void NotifierHost::watch(GDBusConnection* bus)
{
    watch_ = g_bus_watch_name_on_connection(
        bus, watcher, G_BUS_NAME_WATCHER_FLAGS_NONE, onAppeared, onVanished, this, nullptr);
}

void NotifierHost::stopWatching()
{
    stopListening();
    if (watch_)
        g_bus_unwatch_name(std::exchange(watch_, 0));
}

void NotifierHost::onAppeared(GDBusConnection* bus, const char*, const char*, gpointer self)
{
    static_cast<NotifierHost*>(self)->listen(bus);
}

void NotifierHost::onVanished(GDBusConnection*, const char*, gpointer self)
{
    static_cast<NotifierHost*>(self)->stopListening();
    static_cast<NotifierHost*>(self)->set(false);
}

void NotifierHost::listen(GDBusConnection* bus)
{
    stopListening();
    bus_ = static_cast<GDBusConnection*>(g_object_ref(bus));
    cancellable_ = g_cancellable_new();
    subscription_ = g_dbus_connection_signal_subscribe(bus, watcher, watcher, "StatusNotifierHostRegistered", path,
        nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this, nullptr);
    set(std::nullopt);
    ask();
}

void NotifierHost::stopListening()
{
    if (!bus_)
        return;
    g_dbus_connection_signal_unsubscribe(bus_, std::exchange(subscription_, 0));
    g_cancellable_cancel(cancellable_);
    g_object_unref(std::exchange(cancellable_, nullptr));
    g_object_unref(std::exchange(bus_, nullptr));
}

void NotifierHost::ask()
{
    g_dbus_connection_call(bus_, watcher, path, "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", watcher, "IsStatusNotifierHostRegistered"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable_, onAnswer, this);
}

void NotifierHost::onAnswer(GObject* bus, GAsyncResult* result, gpointer self)
{
    // A cancelled call means that `self` may be gone.
    GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
    if (!answer)
        return;
    GVariant* value = nullptr;
    g_variant_get(answer, "(v)", &value);
    const bool isThere = g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
    g_variant_unref(value);
    g_variant_unref(answer);
    static_cast<NotifierHost*>(self)->set(isThere);
}

void NotifierHost::onSignal(
    GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer self)
{
    static_cast<NotifierHost*>(self)->ask();
}

void NotifierHost::set(std::optional<bool> isThere)
{
    if (std::exchange(isThere_, isThere) != isThere && onChange)
        onChange();
}

}
