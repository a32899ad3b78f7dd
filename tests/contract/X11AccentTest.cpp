#include "contract/X11Fixture.h"

#include <gio/gio.h>

#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* description = R"(<node><interface name="org.freedesktop.portal.Settings">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>)";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interfaceName = "org.freedesktop.portal.Settings";

/// A portal of settings that knows one accent colour, on a connection of its own.
class Portal {
public:
    explicit Portal(double red, double green, double blue)
        : color_ { red, green, blue }
    {
        bus_ = g_dbus_connection_new_for_address_sync(std::getenv("DBUS_SESSION_BUS_ADDRESS"),
            GDBusConnectionFlags(
                G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        node_ = g_dbus_node_info_new_for_xml(description, nullptr);
        static const GDBusInterfaceVTable table { answer, nullptr, nullptr, {} };
        g_dbus_connection_register_object(bus_, path, node_->interfaces[0], &table, this, nullptr, nullptr);
        name_ = g_bus_own_name_on_connection(
            bus_, "org.freedesktop.portal.Desktop", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
    }
    ~Portal()
    {
        g_bus_unown_name(name_);
        g_dbus_connection_close_sync(bus_, nullptr, nullptr);
        g_object_unref(bus_);
        g_dbus_node_info_unref(node_);
    }

    void change(const char* key, double red, double green, double blue)
    {
        g_dbus_connection_emit_signal(bus_, nullptr, path, interfaceName, "SettingChanged",
            g_variant_new("(ssv)", "org.freedesktop.appearance", key, g_variant_new("(ddd)", red, green, blue)),
            nullptr);
    }

private:
    static void answer(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
        GDBusMethodInvocation* call, gpointer self)
    {
        const char* key = nullptr;
        g_variant_get(parameters, "(&s&s)", nullptr, &key);
        const auto& [red, green, blue] = static_cast<Portal*>(self)->color_;
        // This method wraps its answer twice.
        GVariant* color = g_variant_new_variant(g_variant_new("(ddd)", red, green, blue));
        if (std::string_view(key) == "accent-color")
            g_dbus_method_invocation_return_value(call, g_variant_new("(v)", color));
        else
            g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.portal.Error.NotFound", "no");
    }

    double color_[3];
    GDBusConnection* bus_ = nullptr;
    GDBusNodeInfo* node_ = nullptr;
    guint name_ = 0;
};

class X11Accent : public X11 {
protected:
    void SetUp() override
    {
        X11::SetUp();
        if (!under_)
            return;
        if (!std::getenv("DBUS_SESSION_BUS_ADDRESS"))
            GTEST_SKIP() << "no session bus";
        session().onAccentColorChange = [this] { ++changes_; };
    }

    int changes_ = 0;
};

}

TEST_F(X11Accent, IsThePortalsAsLongAsItNamesOne)
{
    EXPECT_EQ(session().accentColor(), std::nullopt) << "asked for at once";
    const auto is = [this](std::optional<std::uint32_t> color, int changes) {
        return settle([&] { return session().accentColor() == color && changes_ == changes; });
    };
    {
        Portal portal(1, 0.5, 0);
        EXPECT_TRUE(is(0xFF8000, 1));
        portal.change("color-scheme", 0, 0, 0);
        portal.change("accent-color", 0, 0.2, 1);
        EXPECT_TRUE(is(0x0033FF, 2));
        portal.change("accent-color", -1, -1, -1);
        EXPECT_TRUE(is(std::nullopt, 3)) << "out of range is none";
        portal.change("accent-color", 1, 1, 1);
        EXPECT_TRUE(is(0xFFFFFF, 4));
    }
    const Portal next(0, 1, 0);
    EXPECT_TRUE(is(0x00FF00, 5)) << "one that comes later is asked";
}
