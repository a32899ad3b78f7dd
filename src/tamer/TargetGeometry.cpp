#include "tamer/TargetGeometry.h"

#include "look/Metrics.h"
#include "settings/Settings.h"

#include <algorithm>

namespace {

constexpr double tolerance = 1;

/// How far below the upper edge of the primary screen, where window space begins, this screen's upper edge is. It is
/// what converts the frames of screens that aren't the primary one; for that one it is 0.
double upperEdge(const NSScreen& screen)
{
    const auto screens = NSScreen::screens();
    return screens.empty() ? 0 : screens.front().frame().maxY() - screen.frame().maxY();
}

CGRect targetOn(const NSScreen& screen)
{
    const CGRect& frame = screen.frame();
    const CGRect& visible = screen.visibleFrame();
    const double bar = Metrics::current().barHeight() + Metrics::windowGap;
    // From the screen's upper edge, y down. The Dock's part of the lower edge counts only where the bar isn't before
    // it.
    const double menuBar = frame.maxY() - visible.maxY();
    const bool isAtTop = isTop(Settings::barEdge());
    const double top = isAtTop ? menuBar + bar : menuBar;
    const double bottom = isAtTop ? frame.maxY() - visible.minY() : frame.height - bar;
    return { visible.x, upperEdge(screen) + top, visible.width, bottom - top };
}

}

namespace WindowTamer {

std::optional<CGRect> targetRect(const std::optional<NSScreen>& screen)
{
    if (screen)
        return targetOn(*screen);
    if (const auto main = NSScreen::mainScreen())
        return targetOn(*main);
    const auto screens = NSScreen::screens();
    return screens.empty() ? std::nullopt : std::optional(targetOn(screens.front()));
}

bool overlapsBar(const CGRect& frame, const CGRect& target)
{
    if (isTop(Settings::barEdge()))
        return frame.minY() < target.minY() - tolerance;
    return target.maxY() + tolerance < frame.maxY();
}

std::optional<CGRect> clearedFrame(const CGRect& frame, const CGRect& target)
{
    if (!overlapsBar(frame, target))
        return std::nullopt;
    const double height = std::min(target.height, frame.height);
    const double y = isTop(Settings::barEdge()) ? target.minY() : target.maxY() - height;
    return CGRect { frame.x, y, frame.width, height };
}

}
