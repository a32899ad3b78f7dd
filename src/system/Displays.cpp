#include "system/Displays.h"

#include "windowserver/CGDisplay.h"

#include <algorithm>

namespace {

CGRect toScreenSpace(const CGRect& rect, const NSScreen& primary)
{
    return { rect.x, primary.frame().maxY() - rect.maxY(), rect.width, rect.height };
}

}

namespace Displays {

std::vector<DisplayInfo> all()
{
    std::vector<DisplayInfo> displays;
    for (const NSScreen& screen : NSScreen::screens())
        if (const auto number = displayID(screen))
            displays.push_back({ screen, *number, cgsIdentifier(*number) });
    return displays;
}

std::optional<std::uint32_t> displayID(const NSScreen& screen)
{
    const Value* number = screen.deviceDescription().find("NSScreenNumber");
    return number ? number->integer<std::uint32_t>() : std::nullopt;
}

std::optional<std::string> cgsIdentifier(std::uint32_t displayID)
{
    return CGDisplayCreateUUIDFromDisplayID(displayID);
}

std::optional<NSScreen> screenFor(std::uint32_t displayID)
{
    const auto screens = NSScreen::screens();
    const auto screen = std::ranges::find(screens, std::optional(displayID), Displays::displayID);
    return screen == screens.end() ? std::nullopt : std::optional(*screen);
}

std::optional<NSScreen> screenContaining(const CGRect& rect)
{
    return screenContaining(rect, NSScreen::screens());
}

std::optional<NSScreen> screenContaining(const CGRect& rect, const std::vector<NSScreen>& screens)
{
    if (screens.empty())
        return std::nullopt;

    const CGRect converted = toScreenSpace(rect, screens.front());
    const NSScreen* best = nullptr;
    double bestArea = 0;
    for (const NSScreen& screen : screens) {
        const CGRect common = CGRectIntersection(screen.frame(), converted);
        if (CGRectIsNull(common))
            continue;
        const double area = common.width * common.height;
        if (!best || area > bestArea) {
            best = &screen;
            bestArea = area;
        }
    }
    return best ? std::optional(*best) : NSScreen::mainScreen();
}

}
