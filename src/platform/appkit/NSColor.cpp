#include "appkit/NSColor.h"

#include "appkit/Colors.h"
#include "appkit/NSGraphicsContext.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <QColor>

#include <algorithm>

const char* const NSSystemColorsDidChangeNotification = "NSSystemColorsDidChangeNotification";

NSColor NSColor::controlAccentColor()
{
    constexpr std::uint32_t blue = 0x007AFF;
    const std::uint32_t rgb = host::Desktop::current().session().accentColor().value_or(blue);
    const auto component = [rgb](int shift) { return ((rgb >> shift) & 0xFF) / 255.0; };
    return colorWithSRGBRed(component(16), component(8), component(0), 1.0);
}

NSColor NSColor::blended(double fraction, const NSColor& other) const
{
    const auto mixed = [fraction](double from, double to) { return from + (to - from) * fraction; };
    return { mixed(red_, other.red_), mixed(green_, other.green_), mixed(blue_, other.blue_),
        mixed(alpha_, other.alpha_) };
}

void NSColor::set() const
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->color = *this;
}

QColor toolkitColor(const NSColor& color)
{
    const auto component = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(component(color.redComponent()), component(color.greenComponent()),
        component(color.blueComponent()), component(color.alphaComponent()));
}
