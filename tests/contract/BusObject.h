#pragma once

#include <gio/gio.h>

#include <cstdlib>
#include <functional>
#include <string>

/// A named object on the session bus, on a connection of its own.
class BusObject {
public:
    using Answer = std::function<void(GVariant* arguments, GDBusMethodInvocation* call)>;

    BusObject(const std::string& name, const char* path, const std::string& interface, Answer answer)
        : answer_(std::move(answer))
        , bus_(g_dbus_connection_new_for_address_sync(std::getenv("DBUS_SESSION_BUS_ADDRESS"),
              GDBusConnectionFlags(
                  G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
              nullptr, nullptr, nullptr))
        , node_(g_dbus_node_info_new_for_xml(("<node>" + interface + "</node>").c_str(), nullptr))
    {
        static const GDBusInterfaceVTable table {
            [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
                GDBusMethodInvocation* call, void* self) { static_cast<BusObject*>(self)->answer_(arguments, call); },
            nullptr, nullptr, {}
        };
        g_dbus_connection_register_object(bus_, path, node_->interfaces[0], &table, this, nullptr, nullptr);
        // The name is there when this returns.
        g_variant_unref(g_dbus_connection_call_sync(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name.c_str(), 0U), nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }
    ~BusObject()
    {
        g_dbus_connection_close_sync(bus_, nullptr, nullptr);
        g_object_unref(bus_);
        g_dbus_node_info_unref(node_);
    }
    BusObject(const BusObject&) = delete;
    BusObject& operator=(const BusObject&) = delete;

    GDBusConnection* bus() const { return bus_; }

private:
    Answer answer_;
    GDBusConnection* bus_;
    GDBusNodeInfo* node_;
};
