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

constexpr const char* settings = "org.freedesktop.portal.Settings";
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

PortalAppearance::PortalAppearance(LastingBus& bus)
    : portal_(bus, { "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", settings },
        { "SettingChanged", appearance })
{
    portal_.onAppeared = [this] {
        ask(accentKey);
        ask(schemeKey);
    };
    // A portal that is started again has the same to say, most likely.
    portal_.onVanished = [] {};
    portal_.onSignal = [this](GVariant* arguments) { hear(arguments); };
}

std::optional<std::uint32_t> PortalAppearance::accentColor() const
{
    return chosen_ ? chosen_ : themeColor();
}

/// A portal that knows no such setting answers with an error.
void PortalAppearance::ask(const char* key)
{
    portal_.ask(settings, "Read", g_variant_new("(ss)", appearance, key), "(v)", [this, key](GVariant* answer) {
        const Variant value(g_variant_get_child_value(answer, 0), g_variant_unref);
        set(key, value.get());
    });
}

void PortalAppearance::hear(GVariant* arguments)
{
    if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)")))
        return;
    const char* name = nullptr;
    GVariant* content = nullptr;
    g_variant_get(arguments, "(&s&sv)", nullptr, &name, &content);
    const Variant value(content, g_variant_unref);
    set(name, value.get());
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
