#include "freedesktop/PortalAppearance.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace freedesktop {
namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interfaceName = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* accentKey = "accent-color";
constexpr const char* schemeKey = "color-scheme";

using Variant = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

/// What is in it, however often it is wrapped.
Variant unwrapped(GVariant* value)
{
    Variant content(g_variant_ref(value), g_variant_unref);
    while (g_variant_is_of_type(content.get(), G_VARIANT_TYPE_VARIANT))
        content.reset(g_variant_get_variant(content.get()));
    return content;
}

/// Three shares from 0 to 1; anything else means that none is chosen.
std::optional<std::uint32_t> colorIn(const Variant& content)
{
    if (!g_variant_is_of_type(content.get(), G_VARIANT_TYPE("(ddd)")))
        return std::nullopt;
    double shares[3];
    g_variant_get(content.get(), "(ddd)", &shares[0], &shares[1], &shares[2]);
    std::uint32_t color = 0;
    for (const double share : shares) {
        if (!(share >= 0 && share <= 1))
            return std::nullopt;
        color = color << 8 | static_cast<std::uint32_t>(std::lround(share * 255));
    }
    return color;
}

/// Absent while the toolkit has just the colours that it was born with.
std::optional<std::uint32_t> themeColor()
{
    if (!qApp)
        return std::nullopt;
    const auto marked = [](const QPalette& palette) { return palette.color(QPalette::Active, QPalette::Highlight); };
    const QColor color = marked(QApplication::palette());
    if (color == marked(QApplication::style()->standardPalette()))
        return std::nullopt;
    return color.rgb() & 0xFFFFFF;
}

}

/// A setting that was asked for.
struct PortalAppearance::Asked {
    PortalAppearance& by;
    const char* key;
};

PortalAppearance::PortalAppearance(LastingBus& bus)
{
    bus.add({ [this](GDBusConnection* opened) { watch(opened); }, [this] { stopWatching(); } });
}

PortalAppearance::~PortalAppearance()
{
    stopWatching();
}

void PortalAppearance::watch(GDBusConnection* bus)
{
    watch_ = g_bus_watch_name_on_connection(
        bus, portal, G_BUS_NAME_WATCHER_FLAGS_NONE, onAppeared, onVanished, this, nullptr);
}

void PortalAppearance::stopWatching()
{
    stopListening();
    if (watch_)
        g_bus_unwatch_name(std::exchange(watch_, 0));
}

std::optional<std::uint32_t> PortalAppearance::accentColor() const
{
    return chosen_ ? chosen_ : themeColor();
}

void PortalAppearance::onAppeared(GDBusConnection* bus, const char*, const char*, gpointer self)
{
    static_cast<PortalAppearance*>(self)->listen(bus);
}

/// A portal that is started again has the same to say, most likely.
void PortalAppearance::onVanished(GDBusConnection*, const char*, gpointer self)
{
    static_cast<PortalAppearance*>(self)->stopListening();
}

void PortalAppearance::listen(GDBusConnection* bus)
{
    stopListening();
    bus_ = static_cast<GDBusConnection*>(g_object_ref(bus));
    subscription_ = g_dbus_connection_signal_subscribe(bus, portal, interfaceName, "SettingChanged", path, appearance,
        G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this, nullptr);
    cancellable_ = g_cancellable_new();
    for (const char* key : { accentKey, schemeKey }) {
        auto* asked = new Asked { *this, key };
        g_dbus_connection_call(bus, portal, path, interfaceName, "Read", g_variant_new("(ss)", appearance, key),
            G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable_, onAnswer, asked);
    }
}

void PortalAppearance::stopListening()
{
    if (!bus_)
        return;
    g_dbus_connection_signal_unsubscribe(bus_, std::exchange(subscription_, 0));
    g_cancellable_cancel(cancellable_);
    g_object_unref(std::exchange(cancellable_, nullptr));
    g_object_unref(std::exchange(bus_, nullptr));
}

void PortalAppearance::onAnswer(GObject* bus, GAsyncResult* result, gpointer data)
{
    // A cancelled call means that whoever asked may be gone; a portal that knows no such setting answers with an error
    // too.
    const std::unique_ptr<Asked> asked(static_cast<Asked*>(data));
    const Variant answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr), g_variant_unref);
    if (!answer)
        return;
    const Variant value(g_variant_get_child_value(answer.get(), 0), g_variant_unref);
    asked->by.set(asked->key, value.get());
}

void PortalAppearance::onSignal(
    GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters, gpointer self)
{
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)")))
        return;
    const char* name = nullptr;
    GVariant* content = nullptr;
    g_variant_get(parameters, "(&s&sv)", nullptr, &name, &content);
    const Variant value(content, g_variant_unref);
    static_cast<PortalAppearance*>(self)->set(name, value.get());
}

void PortalAppearance::set(std::string_view key, GVariant* value)
{
    const Variant content = unwrapped(value);
    if (key == accentKey) {
        const auto color = colorIn(content);
        if (std::exchange(chosen_, color) != color && onAccentColor)
            onAccentColor();
    } else if (key == schemeKey && g_variant_is_of_type(content.get(), G_VARIANT_TYPE_UINT32)) {
        const std::uint32_t scheme = g_variant_get_uint32(content.get());
        if (std::exchange(scheme_, scheme) != scheme && onScheme)
            onScheme();
    }
}

}
