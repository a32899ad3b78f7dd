#include "embedded/Accessibility.h"

#include "base/Clock.h"
#include "base/RunLoop.h"
#include "embedded/FaultBox.h"
#include "embedded/World.h"
#include "host/AttributeNames.h"

#include <chrono>
#include <future>
#include <optional>

namespace embedded {

namespace {

using host::Attribute;
using host::AttributeValue;
using host::ElementID;
using Kind = ElementID::Kind;

/// Square points from which a window is more than a passing one.
constexpr double substantialArea = 120000;

ElementID elementOf(const Window& window)
{
    return { window.owner, Kind::window, window.number };
}

/// What is in a window is named by the window's number and its place in the window's list.
constexpr int placeBits = 32;

std::vector<ElementID> elementsIn(const Window& window, std::size_t parent)
{
    std::vector<ElementID> elements;
    for (const std::size_t place : window.elements.at(parent).children)
        elements.push_back({ window.owner, Kind::other, std::uint64_t { window.number } << placeBits | place });
    return elements;
}

template <class T>
std::optional<AttributeValue> held(const std::optional<T>& content)
{
    return content ? std::optional<AttributeValue>(*content) : std::nullopt;
}

bool isSettable(const Window& window, Attribute attribute)
{
    switch (attribute) {
    case Attribute::position:
        return !window.isFullScreen();
    case Attribute::size:
        return !window.isFullScreen() && !window.faults.refusesSizes;
    case Attribute::minimized:
    case Attribute::fullScreen:
    case Attribute::main:
        return true;
    default:
        return false;
    }
}

bool isTransient(const Window& window)
{
    return window.bounds.width * window.bounds.height < substantialArea;
}

}

Accessibility::Accessibility(World& world, CallLog& log)
    : world_(world)
    , log_(log)
{
}

bool Accessibility::isTrusted(bool prompt)
{
    if (prompt && !world_.isAccessibilityPermitted())
        log_.add({ .name = "promptForAccessibility", .value = {} });
    return world_.isAccessibilityPermitted();
}

AXError Accessibility::read(const ElementID& element, Attribute attribute, double timeout, AttributeValue& value)
{
    Reply reply = ask({ Call::Kind::read, element, attribute, nameOf(attribute), timeout, {} });
    if (reply.result == kAXErrorSuccess)
        value = std::move(reply.value);
    return reply.result;
}

AXError Accessibility::write(const ElementID& element, Attribute attribute, double timeout, const AttributeValue& value)
{
    return ask({ Call::Kind::write, element, attribute, nameOf(attribute), timeout, value }).result;
}

AXError Accessibility::isSettable(const ElementID& element, Attribute attribute, double timeout, bool& settable)
{
    Request request { Call::Kind::read, element, attribute, nameOf(attribute), timeout, {} };
    request.asksIfSettable = true;
    const Reply reply = ask(request);
    if (const bool* answer = std::get_if<bool>(&reply.value); reply.result == kAXErrorSuccess && answer)
        settable = *answer;
    return reply.result;
}

AXError Accessibility::perform(const ElementID& element, host::Action action, double timeout)
{
    return ask({ Call::Kind::action, element, {}, nameOf(action), timeout, {} }).result;
}

Accessibility::Reply Accessibility::ask(const Request& request)
{
    Reply reply = std::this_thread::get_id() == mainThread_ ? answer(request) : askMainThread(request);
    if (reply.hung && !RunLoop::main().clock().isManual())
        std::this_thread::sleep_for(std::chrono::duration<double>(request.timeout));
    return reply;
}

Accessibility::Reply Accessibility::askMainThread(const Request& request)
{
    const auto promise = std::make_shared<std::promise<Reply>>();
    auto reply = promise->get_future();
    RunLoop::main().perform([promise, request, weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock())
            promise->set_value((*self)->answer(request));
    });
    const Reply none { kAXErrorCannotComplete, {}, false };
    if (reply.wait_for(std::chrono::duration<double>(request.timeout)) != std::future_status::ready)
        return none;
    try {
        return reply.get();
    } catch (const std::future_error&) {
        return none; // The desktop went away, and with it the block.
    }
}

Accessibility::Reply Accessibility::answer(const Request& request)
{
    Reply reply = answerUnrecorded(request);
    log_.add({ .kind = request.kind,
        .pid = request.element.pid,
        .window = request.element.kind == Kind::window ? request.element.id : 0,
        .name = std::string(request.name),
        .value = request.kind == Call::Kind::write ? std::optional(request.value) : std::nullopt,
        .result = reply.result,
        .heldUp = reply.hung ? request.timeout : 0 });
    return reply;
}

Accessibility::Reply Accessibility::answerUnrecorded(const Request& request)
{
    const ElementID& element = request.element;
    if (!world_.isAccessibilityPermitted())
        return { kAXErrorAPIDisabled, {}, false };
    const RunningProcess* process = world_.process(element.pid);
    if (!process)
        return { kAXErrorInvalidUIElement, {}, false };
    if (process->faults.hangs)
        return { kAXErrorCannotComplete, {}, true };

    const Window* window = world_.window(static_cast<std::uint32_t>(element.id));
    if (element.kind == Kind::window && (!window || window->owner != element.pid || !window->isAccessible))
        return { kAXErrorInvalidUIElement, {}, false };
    if (const AXError error = fault(request); error != kAXErrorSuccess)
        return { error, {}, false };

    const bool isWindow = element.kind == Kind::window;
    if (request.asksIfSettable)
        return { kAXErrorSuccess,
            isWindow ? embedded::isSettable(*window, *request.attribute) : request.attribute == Attribute::frontmost,
            false };
    if (element.kind == Kind::other)
        return request.kind == Call::Kind::read ? readElement(element, *request.attribute)
                                                : Reply { kAXErrorAttributeUnsupported, {}, false };
    switch (request.kind) {
    case Call::Kind::read:
        return isWindow ? readWindow(*window, *request.attribute) : readApplication(*process, *request.attribute);
    case Call::Kind::write:
        return { isWindow ? writeWindow(*window, request) : writeApplication(*process, request), {}, false };
    case Call::Kind::action:
    case Call::Kind::request:
        break;
    }
    if (!isWindow)
        return { kAXErrorActionUnsupported, {}, false };
    world_.raise(window->number);
    return {};
}

/// The failure that was scripted for this call, if any.
AXError Accessibility::fault(const Request& request)
{
    const ElementID& element = request.element;
    ProcessFaults& faults = world_.processFaults(element.pid);
    if (faults.diesAt == request.name) {
        world_.quit(element.pid);
        return kAXErrorCannotComplete;
    }
    const auto fails = [&](FailingCalls& calls) {
        return takeFailure(calls, request.name)
            || (request.kind == Call::Kind::write && takeFailure(calls, "set " + std::string(request.name)));
    };
    if (fails(faults.fails))
        return kAXErrorCannotComplete;
    if (element.kind == Kind::window && fails(world_.windowFaults(static_cast<std::uint32_t>(element.id)).fails))
        return kAXErrorCannotComplete;
    return kAXErrorSuccess;
}

std::vector<ElementID> Accessibility::namedWindows(const RunningProcess& process) const
{
    std::vector<ElementID> elements;
    if (process.faults.needsManualAccessibility && !process.hasManualAccessibility)
        return elements;
    for (const Window* window : world_.windowsOf(process.pid())) {
        if (!window->isAccessible || (process.faults.namesOnlyTransientWindows && !isTransient(*window)))
            continue;
        elements.push_back(elementOf(*window));
    }
    return elements;
}

Accessibility::Reply Accessibility::readApplication(const RunningProcess& process, Attribute attribute) const
{
    switch (attribute) {
    case Attribute::windows:
    case Attribute::children:
        return { kAXErrorSuccess, namedWindows(process), false };
    case Attribute::frontmost:
        return { kAXErrorSuccess, world_.frontmost() == process.pid(), false };
    case Attribute::focusedWindow:
        return readFocusedWindow(process);
    case Attribute::role:
        return { kAXErrorSuccess, std::string("AXApplication"), false };
    default:
        return { kAXErrorAttributeUnsupported, {}, false };
    }
}

Accessibility::Reply Accessibility::readFocusedWindow(const RunningProcess& process) const
{
    if (process.faults.misnamesFocusedWindow)
        return { kAXErrorSuccess, std::string("window"), false };
    const Window* focused = world_.focusedWindow(process.pid());
    const bool silent = process.faults.needsManualAccessibility && !process.hasManualAccessibility;
    if (!focused || !focused->isAccessible || silent)
        return { kAXErrorNoValue, {}, false };
    return { kAXErrorSuccess, elementOf(*focused), false };
}

Accessibility::Reply Accessibility::readWindow(const Window& window, Attribute attribute) const
{
    switch (attribute) {
    case Attribute::title:
        return { kAXErrorSuccess, window.title.value_or(std::string()), false };
    case Attribute::minimized:
        return { kAXErrorSuccess, window.isMinimised, false };
    case Attribute::fullScreen:
        return { kAXErrorSuccess, window.isFullScreen(), false };
    case Attribute::position:
        return { kAXErrorSuccess, window.bounds.origin(), false };
    case Attribute::size:
        return { kAXErrorSuccess, window.bounds.size(), false };
    case Attribute::role:
        return { kAXErrorSuccess, std::string("AXWindow"), false };
    case Attribute::subrole:
        return { kAXErrorSuccess, std::string(window.layer == 0 ? "AXStandardWindow" : "AXFloatingWindow"), false };
    case Attribute::main:
        return { kAXErrorSuccess, world_.focusedWindow(window.owner) == &window, false };
    case Attribute::focused:
        return { kAXErrorSuccess, world_.frontmost() == window.owner && world_.focusedWindow(window.owner) == &window,
            false };
    case Attribute::children:
        return { kAXErrorSuccess, window.elements.empty() ? std::vector<ElementID>() : elementsIn(window, 0), false };
    default:
        return { kAXErrorAttributeUnsupported, {}, false };
    }
}

Accessibility::Reply Accessibility::readElement(const ElementID& id, Attribute attribute) const
{
    const Window* window = world_.window(static_cast<std::uint32_t>(id.id >> placeBits));
    const std::size_t place = static_cast<std::uint32_t>(id.id);
    if (!window || window->owner != id.pid || place >= window->elements.size())
        return { kAXErrorInvalidUIElement, {}, false };
    const Scenario::Element& element = window->elements[place];
    const auto content = [&]() -> std::optional<AttributeValue> {
        switch (attribute) {
        case Attribute::role:
            return element.role;
        case Attribute::title:
            return held(element.title);
        case Attribute::description:
            return held(element.description);
        case Attribute::value:
            return element.text ? held(element.text) : held(element.number);
        case Attribute::minValue:
            return held(element.least);
        case Attribute::maxValue:
            return held(element.most);
        case Attribute::children:
            return elementsIn(*window, place);
        default:
            return std::nullopt;
        }
    }();
    return content ? Reply { kAXErrorSuccess, *content, false } : Reply { kAXErrorAttributeUnsupported, {}, false };
}

AXError Accessibility::writeApplication(const RunningProcess& process, const Request& request)
{
    if (request.attribute != Attribute::frontmost && request.attribute != Attribute::manualAccessibility)
        return kAXErrorAttributeUnsupported;
    const bool* on = std::get_if<bool>(&request.value);
    if (!on)
        return kAXErrorIllegalArgument;
    if (request.attribute == Attribute::manualAccessibility)
        world_.setManualAccessibility(process.pid(), *on);
    else if (*on)
        world_.activate(process.pid());
    return kAXErrorSuccess;
}

AXError Accessibility::writeWindow(const Window& window, const Request& request)
{
    const std::uint32_t number = window.number;
    const bool* on = std::get_if<bool>(&request.value);
    const CGPoint* point = std::get_if<CGPoint>(&request.value);
    const CGSize* size = std::get_if<CGSize>(&request.value);

    switch (*request.attribute) {
    case Attribute::position:
        if (point)
            world_.setBounds(number, { point->x, point->y, window.bounds.width, window.bounds.height });
        return point ? kAXErrorSuccess : kAXErrorIllegalArgument;
    case Attribute::size:
        if (size)
            world_.setBounds(number, { window.bounds.x, window.bounds.y, size->width, size->height });
        return size ? kAXErrorSuccess : kAXErrorIllegalArgument;
    case Attribute::minimized:
        if (on)
            world_.setMinimised(number, *on);
        return on ? kAXErrorSuccess : kAXErrorIllegalArgument;
    case Attribute::fullScreen:
        if (on)
            world_.requestFullScreen(number, *on);
        return on ? kAXErrorSuccess : kAXErrorIllegalArgument;
    case Attribute::main:
        if (on && *on)
            world_.setMain(number);
        return on ? kAXErrorSuccess : kAXErrorIllegalArgument;
    default:
        return kAXErrorAttributeUnsupported;
    }
}

}
