#include "bar/BarPicture.h"

#include "look/Appearance.h"
#include "settings/Settings.h"

BarLook BarLook::current()
{
    return {
        .style = Settings::barStyle(),
        .edge = Settings::barEdge(),
        .tint = Appearance::tint(),
        .opacity = Settings::barOpacity(),
        .accent = Appearance::accent(),
        .floatingInset = Appearance::floatingInset(),
        .showsPips = Settings::showWindowPips(),
    };
}
