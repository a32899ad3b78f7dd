#include "x11/WindowElements.h"

#include <cmath>

namespace x11 {
namespace {

using host::AttributeValue;
using host::ElementID;
using Kind = ElementID::Kind;

/// The elements that are neither applications nor windows, by their numbers. Badges are numbered on from the last.
enum OtherElement : std::uint64_t { desktopElement = 1, dockListElement = 2, firstTileElement = 3 };

ElementID windowElement(const WindowRecord& window)
{
    return { window.pid, Kind::window, window.id };
}

/// Sets `value`; false when the window has no such attribute.
bool readWindowAttribute(
    const DesktopState& state, const WindowRecord& window, std::string_view attribute, AttributeValue& value)
{
    const CGRect bounds = windowSpace(state.outer(window), state.primary);
    if (attribute == "AXTitle")
        value = window.title();
    else if (attribute == "AXMinimized")
        value = state.isIconic(window);
    else if (attribute == "AXPosition")
        value = bounds.origin();
    else if (attribute == "AXSize")
        value = bounds.size();
    else if (attribute == "AXFullScreen")
        value = window.facts.states.fullScreen;
    else
        return false;
    return true;
}

void makeMain(const WindowRequests& ask, const DesktopState&, const WindowRecord& window, bool isMain)
{
    if (isMain)
        ask.activate(window);
}

void setMinimized(const WindowRequests& ask, const DesktopState& state, const WindowRecord& window, bool isMinimized)
{
    // A window on another desktop may be unmapped without being iconified; mapping it would bring it here.
    if (isMinimized == state.isIconic(window))
        return;
    if (isMinimized)
        return ask.iconify(window);
    ask.deiconify(window);
    ask.activate(window);
}

void setFullScreen(const WindowRequests& ask, const DesktopState&, const WindowRecord& window, bool isFullScreen)
{
    ask.setFullScreen(window, isFullScreen);
}

int pixels(double points)
{
    return static_cast<int>(std::lround(std::clamp(points, -32768.0, 32767.0)));
}

}

bool WindowElements::isApplication(pid_t pid) const
{
    if (pid == freedesktop::StandIns::dock || pid == processes_.finder())
        return true;
    return mirror_.read([&](const DesktopState& state) {
        return std::ranges::any_of(
            state.windows, [&](const auto& each) { return each.second.pid == pid && state.isListed(each.second); });
    });
}

// Reading

AXError WindowElements::read(const ElementID& element, std::string_view attribute, double, AttributeValue& value)
{
    switch (element.kind) {
    case Kind::application:
        return readApplication(element.pid, attribute, value);
    case Kind::window:
        return readWindow(static_cast<xcb_window_t>(element.id), attribute, value);
    case Kind::other:
        return readOther(element, attribute, value);
    }
    return kAXErrorIllegalArgument;
}

AXError WindowElements::readApplication(pid_t pid, std::string_view attribute, AttributeValue& value) const
{
    if (!isApplication(pid))
        return kAXErrorInvalidUIElement;
    if (attribute == "AXWindows")
        return readWindows(pid, value);
    if (attribute == "AXFocusedWindow") {
        return mirror_.read([&](const DesktopState& state) {
            const WindowRecord* window = state.lastActiveOf(pid);
            if (!window)
                return kAXErrorNoValue;
            value = windowElement(*window);
            return kAXErrorSuccess;
        });
    }
    if (attribute == "AXChildren" && pid == freedesktop::StandIns::dock) {
        value = std::vector { ElementID { pid, Kind::other, dockListElement } };
        return kAXErrorSuccess;
    }
    return attribute == "AXChildren" ? readWindows(pid, value) : kAXErrorAttributeUnsupported;
}

AXError WindowElements::readWindows(pid_t pid, AttributeValue& value) const
{
    std::vector<ElementID> elements = mirror_.read([&](const DesktopState& state) {
        std::vector<ElementID> result;
        std::ranges::transform(state.windowsOf(pid), std::back_inserter(result),
            [](const WindowRecord* window) { return windowElement(*window); });
        return result;
    });
    // The desktop itself is the Finder's: without windows it has that one, which has no size, and is so reopened at
    // once.
    if (elements.empty() && pid == processes_.finder())
        elements.push_back({ pid, Kind::other, desktopElement });
    value = std::move(elements);
    return kAXErrorSuccess;
}

AXError WindowElements::readWindow(xcb_window_t window, std::string_view attribute, AttributeValue& value) const
{
    return mirror_.read([&](const DesktopState& state) {
        const WindowRecord* record = state.find(window);
        if (!record)
            return kAXErrorInvalidUIElement;
        return readWindowAttribute(state, *record, attribute, value) ? kAXErrorSuccess : kAXErrorAttributeUnsupported;
    });
}

AXError WindowElements::readOther(const ElementID& element, std::string_view attribute, AttributeValue& value) const
{
    if (element.id == desktopElement)
        return attribute == "AXSize" || attribute == "AXPosition" ? kAXErrorNoValue : kAXErrorAttributeUnsupported;
    if (element.pid != freedesktop::StandIns::dock)
        return kAXErrorInvalidUIElement;
    if (element.id == dockListElement) {
        if (attribute != "AXChildren")
            return kAXErrorAttributeUnsupported;
        std::vector<ElementID> tiles;
        for (std::size_t i = 0; i < badges_.all().size(); ++i)
            tiles.push_back({ element.pid, Kind::other, firstTileElement + i });
        value = std::move(tiles);
        return kAXErrorSuccess;
    }
    const auto badge = badges_.at(element.id - firstTileElement);
    if (!badge)
        return kAXErrorInvalidUIElement;
    if (attribute == "AXTitle")
        value = badge->applicationName;
    else if (attribute == "AXStatusLabel" && !badge->text.empty())
        value = badge->text;
    else
        return attribute == "AXStatusLabel" ? kAXErrorNoValue : kAXErrorAttributeUnsupported;
    return kAXErrorSuccess;
}

// Writing

AXError WindowElements::write(const ElementID& element, std::string_view attribute, double, const AttributeValue& value)
{
    switch (element.kind) {
    case Kind::application:
        return writeApplication(element.pid, attribute, value);
    case Kind::window:
        return writeWindow(static_cast<xcb_window_t>(element.id), attribute, value);
    case Kind::other:
        return kAXErrorAttributeUnsupported;
    }
    return kAXErrorIllegalArgument;
}

AXError WindowElements::writeApplication(pid_t pid, std::string_view attribute, const AttributeValue& value) const
{
    if (!isApplication(pid))
        return kAXErrorInvalidUIElement;
    if (attribute == "AXManualAccessibility")
        return kAXErrorSuccess;
    if (attribute != "AXFrontmost")
        return kAXErrorAttributeUnsupported;
    const bool* comesForward = std::get_if<bool>(&value);
    if (!comesForward)
        return kAXErrorIllegalArgument;
    const bool isFrontmost = mirror_.read([&](const DesktopState& state) {
        const WindowRecord* active = state.find(state.active);
        return active && active->pid == pid;
    });
    if (*comesForward && !isFrontmost)
        manager_.activate(pid);
    return kAXErrorSuccess;
}

AXError WindowElements::writeWindow(xcb_window_t window, std::string_view attribute, const AttributeValue& value) const
{
    const auto outcome = [](bool exists) { return exists ? kAXErrorSuccess : kAXErrorInvalidUIElement; };
    const Point primary = mirror_.read([](const DesktopState& state) { return state.primary; });

    if (attribute == "AXPosition" || attribute == "AXSize") {
        const auto* point = std::get_if<CGPoint>(&value);
        const auto* size = std::get_if<CGSize>(&value);
        if (attribute == "AXPosition" && point)
            return outcome(manager_.setOuter(
                window, Point { primary.x + pixels(point->x), primary.y + pixels(point->y) }, std::nullopt));
        if (attribute == "AXSize" && size)
            return outcome(
                manager_.setOuter(window, std::nullopt, Point { pixels(size->width), pixels(size->height) }));
        return kAXErrorIllegalArgument;
    }

    using Order = void (*)(const WindowRequests&, const DesktopState&, const WindowRecord&, bool);
    static constexpr std::pair<std::string_view, Order> orders[] = {
        { "AXMain", makeMain },
        { "AXMinimized", setMinimized },
        { "AXFullScreen", setFullScreen },
    };
    const auto order = std::ranges::find(orders, attribute, &std::pair<std::string_view, Order>::first);
    if (order == std::end(orders))
        return kAXErrorAttributeUnsupported;
    const bool* isOn = std::get_if<bool>(&value);
    if (!isOn)
        return kAXErrorIllegalArgument;
    return outcome(manager_.with(window, [&](const auto& ask, const auto& state, const WindowRecord& record) {
        order->second(ask, state, record, *isOn);
    }));
}

AXError WindowElements::perform(const ElementID& element, std::string_view action, double)
{
    if (element.kind != Kind::window || action != "AXRaise")
        return kAXErrorActionUnsupported;
    const bool exists = manager_.with(static_cast<xcb_window_t>(element.id),
        [](const auto& ask, const DesktopState& state, const WindowRecord& window) {
            const WindowRecord* active = state.find(state.active);
            if (active && active->pid == window.pid)
                ask.activate(window);
            else
                ask.raise(window);
        });
    return exists ? kAXErrorSuccess : kAXErrorInvalidUIElement;
}

}
