#pragma once

#include "base/AXError.h"
#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

/// Names an element of an application's accessibility tree, also one that has gone.
struct ElementID {
    enum class Kind : std::uint8_t { application, window, other };

    pid_t pid = 0;
    Kind kind = Kind::application;
    /// For a window, its number. 0 for an application.
    std::uint64_t id = 0;

    bool operator==(const ElementID&) const = default;
};

using AttributeValue = std::variant<bool, double, std::string, CGPoint, CGSize, ElementID, std::vector<ElementID>>;

/// Other applications' windows, read and driven. Any thread. A call on an application that doesn't answer returns
/// `kAXErrorCannotComplete` within `timeout` seconds; on an element that has gone, `kAXErrorInvalidUIElement`.
/// Points are in window space.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// Whether the user trusts this program with accessibility. With `prompt`, the user is asked if not.
    virtual bool isTrusted(bool prompt) = 0;

    /// Attributes of an application: "AXWindows", "AXFocusedWindow", "AXChildren"; of a window: "AXTitle",
    /// "AXMinimized", "AXPosition", "AXSize", "AXFullScreen"; of other elements: "AXChildren", "AXTitle",
    /// "AXStatusLabel".
    virtual AXError read(const ElementID& element, std::string_view attribute, double timeout, AttributeValue& value)
        = 0;
    /// Of an application: "AXFrontmost", "AXManualAccessibility"; of a window: "AXMain", "AXMinimized", "AXPosition",
    /// "AXSize", "AXFullScreen".
    virtual AXError write(
        const ElementID& element, std::string_view attribute, double timeout, const AttributeValue& value)
        = 0;
    /// "AXRaise" on a window.
    virtual AXError perform(const ElementID& element, std::string_view action, double timeout) = 0;
};

}
