#include "bar/PanelPlace.h"

#include "appkit/NSScreen.h"
#include "settings/Settings.h"

#include <algorithm>

namespace {

std::optional<NSScreen> screenOf(const CGRect& button)
{
    const auto screens = NSScreen::screens();
    const auto found = std::ranges::find_if(
        screens, [&](const NSScreen& screen) { return CGRectIntersectsRect(screen.frame(), button); });
    return found != screens.end() ? *found : NSScreen::mainScreen();
}

}

double PanelPlace::room(const CGRect& button, double margin)
{
    const auto screen = screenOf(button);
    return screen ? std::max(0.0, screen->frame().width - 2 * margin) : 0;
}

CGRect PanelPlace::beside(const CGRect& button, CGSize panel, double gap, double margin)
{
    double x = button.midX() - panel.width * 0.5;
    // One that is wider than the screen keeps its right end in sight.
    if (const auto screen = screenOf(button))
        x = std::min(std::max(x, screen->frame().minX() + margin), screen->frame().maxX() - panel.width - margin);
    const double y = isTop(Settings::barEdge()) ? button.minY() - panel.height - gap : button.maxY() + gap;
    return { x, y, panel.width, panel.height };
}
