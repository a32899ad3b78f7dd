#include "x11/WindowElements.h"

namespace x11 {
namespace {

using host::Attribute;
using host::AttributeValue;
using host::ElementID;
using Kind = ElementID::Kind;

/// The desktop itself, as a window of the program that shows it. It has no attributes.
constexpr std::uint64_t desktopElement = 0;

ElementID windowElement(const WindowRecord& window)
{
    return { window.pid, Kind::window, window.id };
}

const char* subrole(WindowKind kind)
{
    switch (kind) {
    case WindowKind::normal:
        return "AXStandardWindow";
    case WindowKind::dialog:
        return "AXDialog";
    case WindowKind::utility:
        return "AXFloatingWindow";
    default:
        return "AXUnknown";
    }
}

AXError readAttribute(const DesktopState& state, const WindowRecord& window, Attribute attribute, AttributeValue& value)
{
    switch (attribute) {
    case Attribute::title:
        value = window.title();
        return kAXErrorSuccess;
    case Attribute::minimized:
        value = state.isIconic(window);
        return kAXErrorSuccess;
    case Attribute::position:
        value = state.points.windowSpace(state.outer(window)).origin();
        return kAXErrorSuccess;
    case Attribute::size:
        value = state.points.windowSpace(state.outer(window)).size();
        return kAXErrorSuccess;
    case Attribute::fullScreen:
        value = window.facts.states.fullScreen;
        return kAXErrorSuccess;
    case Attribute::role:
        value = std::string("AXWindow");
        return kAXErrorSuccess;
    case Attribute::subrole:
        value = std::string(subrole(window.facts.kind()));
        return kAXErrorSuccess;
    case Attribute::main: {
        const WindowRecord* last = state.lastActiveOf(window.pid);
        value = last && last->id == window.id;
        return kAXErrorSuccess;
    }
    case Attribute::focused:
        value = state.active == window.id;
        return kAXErrorSuccess;
    default:
        return kAXErrorAttributeUnsupported;
    }
}

void makeMain(WindowRequests& ask, const DesktopState&, const WindowRecord& window, bool isMain)
{
    if (isMain)
        ask.activate(window);
}

void setMinimized(WindowRequests& ask, const DesktopState& state, const WindowRecord& window, bool isMinimized)
{
    // A window on another desktop may be unmapped without being iconified; mapping it would bring it here.
    if (isMinimized == state.isIconic(window))
        return;
    if (isMinimized)
        return ask.iconify(window);
    ask.deiconify(window);
    ask.activate(window);
}

void setFullScreen(WindowRequests& ask, const DesktopState&, const WindowRecord& window, bool isFullScreen)
{
    ask.setFullScreen(window, isFullScreen);
}

}

bool WindowElements::isApplication(pid_t pid) const
{
    if (pid == freedesktop::StandIns::dock || pid == processes_.finder())
        return true;
    return mirror_.read([&](const DesktopState& state) { return state.isOwner(pid); });
}

bool WindowElements::isFrontmost(pid_t pid) const
{
    return mirror_.read([&](const DesktopState& state) {
        const WindowRecord* active = state.find(state.active);
        return active && active->pid == pid;
    });
}

// Reading

AXError WindowElements::read(const ElementID& element, Attribute attribute, double timeout, AttributeValue& value)
{
    switch (element.kind) {
    case Kind::application:
        return readApplication(element.pid, attribute, timeout, value);
    case Kind::window:
        return readWindow(static_cast<xcb_window_t>(element.id), attribute, value);
    case Kind::other:
        return element.id == desktopElement ? kAXErrorAttributeUnsupported
                                            : tree_.read(element, attribute, timeout, value);
    }
    return kAXErrorIllegalArgument;
}

AXError WindowElements::readApplication(pid_t pid, Attribute attribute, double timeout, AttributeValue& value)
{
    if (!isApplication(pid))
        return kAXErrorInvalidUIElement;
    switch (attribute) {
    case Attribute::windows:
        return readWindows(pid, value);
    case Attribute::children:
        return tree_.children(pid, timeout, value);
    case Attribute::role:
        value = std::string("AXApplication");
        return kAXErrorSuccess;
    case Attribute::frontmost:
        value = isFrontmost(pid);
        return kAXErrorSuccess;
    case Attribute::focusedWindow:
        return readFocusedWindow(pid, value);
    default:
        return kAXErrorAttributeUnsupported;
    }
}

AXError WindowElements::readFocusedWindow(pid_t pid, AttributeValue& value) const
{
    return mirror_.read([&](const DesktopState& state) {
        const WindowRecord* window = state.lastActiveOf(pid);
        if (!window)
            return kAXErrorNoValue;
        value = windowElement(*window);
        return kAXErrorSuccess;
    });
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

AXError WindowElements::readWindow(xcb_window_t window, Attribute attribute, AttributeValue& value) const
{
    return mirror_.read([&](const DesktopState& state) {
        const WindowRecord* record = state.find(window);
        return record ? readAttribute(state, *record, attribute, value) : kAXErrorInvalidUIElement;
    });
}

// Writing

AXError WindowElements::write(const ElementID& element, Attribute attribute, double, const AttributeValue& value)
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

AXError WindowElements::writeApplication(pid_t pid, Attribute attribute, const AttributeValue& value) const
{
    if (!isApplication(pid))
        return kAXErrorInvalidUIElement;
    if (attribute == Attribute::manualAccessibility)
        return kAXErrorSuccess;
    if (attribute != Attribute::frontmost)
        return kAXErrorAttributeUnsupported;
    const bool* comesForward = std::get_if<bool>(&value);
    if (!comesForward)
        return kAXErrorIllegalArgument;
    if (*comesForward && !isFrontmost(pid))
        manager_.activate(pid);
    return kAXErrorSuccess;
}

AXError WindowElements::writeWindow(xcb_window_t window, Attribute attribute, const AttributeValue& value) const
{
    const auto outcome = [](bool exists) { return exists ? kAXErrorSuccess : kAXErrorInvalidUIElement; };
    const Points points = mirror_.read([](const DesktopState& state) { return state.points; });

    if (attribute == Attribute::position || attribute == Attribute::size) {
        const auto* point = std::get_if<CGPoint>(&value);
        const auto* size = std::get_if<CGSize>(&value);
        if (attribute == Attribute::position && point)
            return outcome(manager_.setOuter(window, points.fromWindowSpace(*point), std::nullopt));
        if (attribute == Attribute::size && size)
            return outcome(manager_.setOuter(
                window, std::nullopt, Point { points.pixels(size->width), points.pixels(size->height) }));
        return kAXErrorIllegalArgument;
    }

    using Order = void (*)(WindowRequests&, const DesktopState&, const WindowRecord&, bool);
    static constexpr std::pair<Attribute, Order> orders[] = {
        { Attribute::main, makeMain },
        { Attribute::minimized, setMinimized },
        { Attribute::fullScreen, setFullScreen },
    };
    const auto order = std::ranges::find(orders, attribute, &std::pair<Attribute, Order>::first);
    if (order == std::end(orders))
        return kAXErrorAttributeUnsupported;
    const bool* isOn = std::get_if<bool>(&value);
    if (!isOn)
        return kAXErrorIllegalArgument;
    return outcome(manager_.with(window,
        [&](auto& ask, const auto& state, const WindowRecord& record) { order->second(ask, state, record, *isOn); }));
}

/// Whether the window manager will do it isn't known before it is asked.
AXError WindowElements::isSettable(const ElementID& element, Attribute attribute, double, bool& settable)
{
    constexpr Attribute ofWindows[]
        = { Attribute::position, Attribute::size, Attribute::minimized, Attribute::fullScreen, Attribute::main };
    switch (element.kind) {
    case Kind::application:
        if (!isApplication(element.pid))
            return kAXErrorInvalidUIElement;
        settable = attribute == Attribute::frontmost;
        return kAXErrorSuccess;
    case Kind::window: {
        const auto window = static_cast<xcb_window_t>(element.id);
        if (!mirror_.read([&](const DesktopState& state) { return state.find(window) != nullptr; }))
            return kAXErrorInvalidUIElement;
        settable = std::ranges::find(ofWindows, attribute) != std::end(ofWindows);
        return kAXErrorSuccess;
    }
    case Kind::other:
        settable = false;
        return kAXErrorSuccess;
    }
    return kAXErrorIllegalArgument;
}

AXError WindowElements::perform(const ElementID& element, host::Action, double)
{
    if (element.kind != Kind::window)
        return kAXErrorActionUnsupported;
    const bool exists = manager_.with(
        static_cast<xcb_window_t>(element.id), [](auto& ask, const DesktopState& state, const WindowRecord& window) {
            const WindowRecord* active = state.find(state.active);
            if (active && active->pid == window.pid)
                ask.activate(window);
            else
                ask.raise(window);
        });
    return exists ? kAXErrorSuccess : kAXErrorInvalidUIElement;
}

}
