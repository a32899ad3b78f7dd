#include "look/Appearance.h"

#include "look/HexColor.h"
#include "look/Metrics.h"
#include "look/Palette.h"
#include "settings/Settings.h"

namespace Appearance {

NSColor tint()
{
    return HexColor::parse(Settings::barTintHex()).value_or(Palette::barTint);
}

NSColor accent()
{
    const auto chosen = HexColor::parse(Settings::accentHex());
    return chosen ? *chosen : NSColor::controlAccentColor();
}

double floatingInset()
{
    return Settings::floatingBar() ? Metrics::current().scaled(8) : 0;
}

}
