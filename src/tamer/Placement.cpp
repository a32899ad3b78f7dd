#include "tamer/Placement.h"

#include "base/PerDesktop.h"
#include "log/Log.h"
#include "system/Attribute.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr double samePlaceTolerance = 2;

struct State {
    std::uint64_t requests = 0;
    /// Never shrinks: a window that comes back is known.
    std::map<Placement::WindowName, CGRect> placedWindows;
};

State& state()
{
    return perDesktop<State>();
}

AXError request(const AXUIElement& window, std::string_view attribute, const AXValue& value)
{
    ++state().requests;
    return AXUIElementSetAttributeValue(window, attribute, value);
}

}

namespace Placement {

std::optional<CGRect> placed(const WindowName& window)
{
    const auto& windows = state().placedWindows;
    const auto found = windows.find(window);
    return found == windows.end() ? std::nullopt : std::optional(found->second);
}

void remember(const WindowName& window, const CGRect& rect)
{
    state().placedWindows.insert_or_assign(window, rect);
}

bool isSamePlace(const CGRect& a, const CGRect& b)
{
    return std::abs(a.y - b.y) < samePlaceTolerance && std::abs(a.height - b.height) < samePlaceTolerance;
}

std::uint64_t requestCount()
{
    return state().requests;
}

void setPosition(const AXUIElement& window, CGPoint position)
{
    request(window, "AXPosition", position);
}

void setSize(const AXUIElement& window, CGSize size)
{
    request(window, "AXSize", size);
}

AXError leaveFullScreen(const AXUIElement& window)
{
    return request(window, "AXFullScreen", false);
}

void setFrame(const AXUIElement& window, const CGRect& frame)
{
    setSize(window, frame.size());
    setPosition(window, frame.origin());
    setSize(window, frame.size());
}

void place(const AXUIElement& window, const WindowName& name, const CGRect& rect)
{
    setFrame(window, rect);
    if (const auto size = Attribute::size(window, "AXSize"))
        Log::debug("tamer: placed window ", name.number, " -> ", whole(size->width), "x", whole(size->height));
    else
        Log::debug("tamer: placed window ", name.number, " -> unknown");
    remember(name, rect);
}

std::int64_t whole(double value)
{
    constexpr double most = 1e15;
    return std::isnan(value) ? 0 : static_cast<std::int64_t>(std::clamp(value, -most, most));
}

}
