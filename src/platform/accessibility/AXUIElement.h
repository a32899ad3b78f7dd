#pragma once

#include "base/AXError.h"
#include "base/CGGeometry.h"
#include "host/Accessibility.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An element of an application's accessibility tree, with the time that a call on it may take. A plain value; any
/// thread.
class AXUIElement {
public:
    explicit AXUIElement(const host::ElementID& id, double timeout = defaultTimeout)
        : id_(id)
        , timeout_(timeout)
    {
    }

    static constexpr double defaultTimeout = 6.0;

    const host::ElementID& id() const { return id_; }
    double timeout() const { return timeout_; }

    /// Elements are equal when they name the same thing, whatever their time-outs.
    bool operator==(const AXUIElement& other) const { return id_ == other.id_; }

private:
    friend void AXUIElementSetMessagingTimeout(AXUIElement& element, double seconds);

    host::ElementID id_;
    double timeout_;
};

/// The value of an attribute. Access is checked: the wrong type gives an empty optional.
class AXValue {
public:
    AXValue() = default;
    AXValue(bool value)
        : value_(value)
    {
    }
    AXValue(CGPoint value)
        : value_(value)
    {
    }
    AXValue(CGSize value)
        : value_(value)
    {
    }
    AXValue(host::AttributeValue value, double timeout)
        : value_(std::move(value))
        , timeout_(timeout)
    {
    }

    std::optional<bool> boolean() const;
    std::optional<double> number() const;
    std::optional<std::string> text() const;
    std::optional<CGPoint> point() const;
    std::optional<CGSize> size() const;
    std::optional<AXUIElement> element() const;
    std::optional<std::vector<AXUIElement>> elements() const;

    const host::AttributeValue& raw() const { return value_; }

private:
    host::AttributeValue value_;
    double timeout_ = AXUIElement::defaultTimeout;
};

/// Whether this process is trusted for accessibility; with `prompt` the user is asked if it isn't. Main thread.
bool AXIsProcessTrustedWithOptions(bool prompt);

AXUIElement AXUIElementCreateApplication(pid_t pid);
/// How long, in seconds, a call on this element and on what is read from it may block.
void AXUIElementSetMessagingTimeout(AXUIElement& element, double seconds);
AXError AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute, AXValue& value);
AXError AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute, const AXValue& value);
/// Whether the attribute can be set now.
AXError AXUIElementIsAttributeSettable(const AXUIElement& element, std::string_view attribute, bool& settable);
AXError AXUIElementPerformAction(const AXUIElement& element, std::string_view action);
/// The window number of a window element.
AXError _AXUIElementGetWindow(const AXUIElement& element, std::uint32_t& number);
