#pragma once

#include <gio/gio.h>

#include <string>

namespace freedesktop {

/// Whether the session has a message bus. Without one, asking for it would start one of our own.
bool hasSessionBus();

/// How a program connects to a message bus at an address.
constexpr auto busClient = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

/// The session's bus, to be unreferenced; null where there is none, or none that answers within so many milliseconds.
GDBusConnection* sessionBus(int milliseconds);

/// The same of the message bus at a D-Bus address.
GDBusConnection* busAt(const std::string& address, int milliseconds);

}
