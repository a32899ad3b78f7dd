#include "accessibility/AXUIElement.h"

#include "accessibility/DockTree.h"
#include "foundation/DispatchQueue.h"
#include "host/AttributeNames.h"
#include "host/Desktop.h"

namespace {

host::Accessibility& accessibility()
{
    return host::Desktop::current().accessibility();
}

template <class T>
std::optional<T> as(const host::AttributeValue& value)
{
    const T* content = std::get_if<T>(&value);
    return content ? std::optional<T>(*content) : std::nullopt;
}

/// Of the Dock nothing but its tree is looked at, which lives on the main thread. Absent for anything else.
std::optional<AXError> readDock(const AXUIElement& element, std::string_view name, host::AttributeValue& value)
{
    if (element.id().kind != host::ElementID::Kind::other && name != "AXChildren")
        return std::nullopt;
    std::optional<AXError> result;
    DispatchQueue::mainSync([&] {
        if (DockTree::holds(element.id()))
            result = DockTree::read(element.id(), name, element.timeout(), value);
    });
    return result;
}

AXError read(const AXUIElement& element, std::string_view name, host::AttributeValue& value)
{
    if (const auto result = readDock(element, name, value))
        return *result;
    const auto attribute = host::attributeNamed(name);
    return attribute ? accessibility().read(element.id(), *attribute, element.timeout(), value)
                     : kAXErrorAttributeUnsupported;
}

}

std::optional<bool> AXValue::boolean() const
{
    return as<bool>(value_);
}

std::optional<double> AXValue::number() const
{
    return as<double>(value_);
}

std::optional<std::string> AXValue::text() const
{
    return as<std::string>(value_);
}

std::optional<CGPoint> AXValue::point() const
{
    return as<CGPoint>(value_);
}

std::optional<CGSize> AXValue::size() const
{
    return as<CGSize>(value_);
}

std::optional<AXUIElement> AXValue::element() const
{
    const auto id = as<host::ElementID>(value_);
    return id ? std::optional<AXUIElement>(std::in_place, *id, timeout_) : std::nullopt;
}

std::optional<std::vector<AXUIElement>> AXValue::elements() const
{
    const auto* ids = std::get_if<std::vector<host::ElementID>>(&value_);
    if (!ids)
        return std::nullopt;
    std::vector<AXUIElement> elements;
    for (const host::ElementID& id : *ids)
        elements.emplace_back(id, timeout_);
    return elements;
}

bool AXIsProcessTrustedWithOptions(bool prompt)
{
    return accessibility().isTrusted(prompt);
}

AXUIElement AXUIElementCreateApplication(pid_t pid)
{
    return AXUIElement({ pid, host::ElementID::Kind::application, 0 });
}

void AXUIElementSetMessagingTimeout(AXUIElement& element, double seconds)
{
    element.timeout_ = seconds;
}

AXError AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view name, AXValue& value)
{
    host::AttributeValue content;
    const AXError error = read(element, name, content);
    if (error == kAXErrorSuccess)
        value = AXValue(std::move(content), element.timeout());
    return error;
}

AXError AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view name, const AXValue& value)
{
    const auto attribute = host::attributeNamed(name);
    if (!attribute)
        return kAXErrorAttributeUnsupported;
    return accessibility().write(element.id(), *attribute, element.timeout(), value.raw());
}

AXError AXUIElementIsAttributeSettable(const AXUIElement& element, std::string_view name, bool& settable)
{
    const auto attribute = host::attributeNamed(name);
    return attribute ? accessibility().isSettable(element.id(), *attribute, element.timeout(), settable)
                     : kAXErrorAttributeUnsupported;
}

AXError AXUIElementPerformAction(const AXUIElement& element, std::string_view name)
{
    const auto action = host::actionNamed(name);
    if (!action)
        return kAXErrorActionUnsupported;
    return accessibility().perform(element.id(), *action, element.timeout());
}

AXError _AXUIElementGetWindow(const AXUIElement& element, std::uint32_t& number)
{
    if (element.id().kind != host::ElementID::Kind::window)
        return kAXErrorIllegalArgument;
    number = static_cast<std::uint32_t>(element.id().id);
    return kAXErrorSuccess;
}
