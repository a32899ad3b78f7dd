#include "contract/BusObject.h"
#include "contract/X11Fixture.h"

#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* description = R"(<interface name="org.freedesktop.portal.Settings">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface>)";
constexpr const char* path = "/org/freedesktop/portal/desktop";

/// A portal of settings that knows one accent colour.
class Portal {
public:
    Portal(double red, double green, double blue)
        : color_ { red, green, blue }
    {
    }

    void change(const char* key, double red, double green, double blue)
    {
        g_dbus_connection_emit_signal(object_.bus(), nullptr, path, "org.freedesktop.portal.Settings", "SettingChanged",
            g_variant_new("(ssv)", "org.freedesktop.appearance", key, g_variant_new("(ddd)", red, green, blue)),
            nullptr);
    }

private:
    void answer(GVariant* parameters, GDBusMethodInvocation* call)
    {
        const char* key = nullptr;
        g_variant_get(parameters, "(&s&s)", nullptr, &key);
        const auto& [red, green, blue] = color_;
        // This method wraps its answer twice.
        GVariant* color = g_variant_new_variant(g_variant_new("(ddd)", red, green, blue));
        if (std::string_view(key) == "accent-color")
            g_dbus_method_invocation_return_value(call, g_variant_new("(v)", color));
        else
            g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.portal.Error.NotFound", "no");
    }

    double color_[3];
    BusObject object_ { "org.freedesktop.portal.Desktop", path, description,
        [this](GVariant* parameters, GDBusMethodInvocation* call) { answer(parameters, call); } };
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
