#include "system/Attribute.h"

namespace {

template <class T>
std::optional<T> read(const AXUIElement& element, std::string_view attribute, std::optional<T> (AXValue::*as)() const)
{
    AXValue value;
    if (AXUIElementCopyAttributeValue(element, attribute, value) != kAXErrorSuccess)
        return std::nullopt;
    return (value.*as)();
}

}

namespace Attribute {

std::optional<bool> boolean(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::boolean);
}

std::optional<std::string> text(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::text);
}

std::optional<CGPoint> point(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::point);
}

std::optional<CGSize> size(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::size);
}

std::optional<AXUIElement> element(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::element);
}

std::optional<std::vector<AXUIElement>> elements(const AXUIElement& element, std::string_view attribute)
{
    return read(element, attribute, &AXValue::elements);
}

std::optional<std::uint32_t> windowNumber(const AXUIElement& window)
{
    std::uint32_t number = 0;
    if (_AXUIElementGetWindow(window, number) != kAXErrorSuccess)
        return std::nullopt;
    return number;
}

AXUIElement application(pid_t pid, double timeout)
{
    AXUIElement application = AXUIElementCreateApplication(pid);
    AXUIElementSetMessagingTimeout(application, timeout);
    return application;
}

}
