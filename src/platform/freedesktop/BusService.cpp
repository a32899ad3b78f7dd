#include "freedesktop/BusService.h"

#include <memory>
#include <utility>

namespace freedesktop {

BusService::BusService(LastingBus& bus, const Address& address, const Signal& signal)
    : address_(address)
    , signal_(signal)
{
    bus.add({ [this](GDBusConnection* opened) { watch(opened); },
        [this] {
            stopWatching();
            onVanished();
        } });
}

BusService::~BusService()
{
    stopWatching();
}

void BusService::watch(GDBusConnection* bus)
{
    watch_ = g_bus_watch_name_on_connection(
        bus, address_.name, G_BUS_NAME_WATCHER_FLAGS_NONE, appeared, vanished, this, nullptr);
}

void BusService::stopWatching()
{
    stopListening();
    if (watch_)
        g_bus_unwatch_name(std::exchange(watch_, 0));
}

void BusService::appeared(GDBusConnection* bus, const char*, const char*, gpointer data)
{
    auto* self = static_cast<BusService*>(data);
    self->stopListening();
    self->bus_ = static_cast<GDBusConnection*>(g_object_ref(bus));
    self->cancellable_ = g_cancellable_new();
    const auto& [name, path, interfaceName] = self->address_;
    self->subscription_ = g_dbus_connection_signal_subscribe(bus, name, interfaceName, self->signal_.name, path,
        self->signal_.firstArgument, G_DBUS_SIGNAL_FLAGS_NONE, heard, self, nullptr);
    self->onAppeared();
}

void BusService::vanished(GDBusConnection*, const char*, gpointer data)
{
    auto* self = static_cast<BusService*>(data);
    self->stopListening();
    self->onVanished();
}

void BusService::stopListening()
{
    if (!bus_)
        return;
    g_dbus_connection_signal_unsubscribe(bus_, std::exchange(subscription_, 0));
    g_cancellable_cancel(cancellable_);
    g_object_unref(std::exchange(cancellable_, nullptr));
    g_object_unref(std::exchange(bus_, nullptr));
}

void BusService::heard(
    GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments, gpointer self)
{
    static_cast<BusService*>(self)->onSignal(arguments);
}

void BusService::ask(
    const char* interfaceName, const char* method, GVariant* arguments, const char* answerType, Answered block)
{
    g_dbus_connection_call(bus_, address_.name, address_.path, interfaceName, method, arguments,
        G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable_, answered,
        new Answered(std::move(block)));
}

void BusService::answered(GObject* bus, GAsyncResult* result, gpointer data)
{
    // A cancelled call means that whoever asked may be gone.
    const std::unique_ptr<Answered> block(static_cast<Answered*>(data));
    GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
    if (!answer)
        return;
    (*block)(answer);
    g_variant_unref(answer);
}

}
