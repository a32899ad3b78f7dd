#include "freedesktop/LastingBus.h"

#include "freedesktop/SessionBus.h"

#include <algorithm>
#include <utility>

namespace freedesktop {
namespace {

/// Seconds from one attempt to the next: each time twice as long.
constexpr double firstPatience = 1;
constexpr double longestPatience = 60;

}

LastingBus::~LastingBus()
{
    if (cancellable_) {
        g_cancellable_cancel(cancellable_);
        g_object_unref(cancellable_);
    }
    forget();
}

void LastingBus::connect()
{
    if (cancellable_)
        return;
    if (!hasSessionBus())
        return tellGone();
    cancellable_ = g_cancellable_new();
    patience_ = firstPatience;
    open();
}

void LastingBus::open()
{
    char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!address)
        return openLater();
    g_dbus_connection_new_for_address(address, busClient, nullptr, cancellable_, onOpened, this);
    g_free(address);
}

void LastingBus::openLater()
{
    retry_.schedule(patience_, [this] { open(); });
    patience_ = std::min(2 * patience_, longestPatience);
}

void LastingBus::onOpened(GObject*, GAsyncResult* result, gpointer data)
{
    GError* error = nullptr;
    GDBusConnection* bus = g_dbus_connection_new_for_address_finish(result, &error);
    // A cancelled call means that `self` is gone.
    const bool isOver = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
    g_clear_error(&error);
    if (isOver)
        return;
    auto* self = static_cast<LastingBus*>(data);
    if (!bus)
        return self->openLater();
    self->bus_ = bus;
    self->patience_ = firstPatience;
    g_signal_connect(bus, "closed", G_CALLBACK(onClosed), self);
    for (const Listener& listener : self->listeners_)
        listener.opened(bus);
}

void LastingBus::onClosed(GDBusConnection*, gboolean, GError*, gpointer data)
{
    auto* self = static_cast<LastingBus*>(data);
    self->forget();
    self->tellGone();
    self->openLater();
}

void LastingBus::forget()
{
    if (!bus_)
        return;
    g_signal_handlers_disconnect_by_data(bus_, this);
    g_object_unref(std::exchange(bus_, nullptr));
}

void LastingBus::tellGone()
{
    for (const Listener& listener : listeners_)
        listener.gone();
}

}
