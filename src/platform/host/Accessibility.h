#pragma once

#include "base/AXError.h"
#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace host {

/// Names an application, a window of one, or one of the elements in them, also one that has gone.
struct ElementID {
    enum class Kind : std::uint8_t { application, window, other };

    pid_t pid = 0;
    Kind kind = Kind::application;
    /// For a window, its number; for another element, what the desktop calls it. 0 for an application.
    std::uint64_t id = 0;

    bool operator==(const ElementID&) const = default;
};

using AttributeValue = std::variant<bool, double, std::string, CGPoint, CGSize, ElementID, std::vector<ElementID>>;

/// What can be read (r) and written (w), and of which type it is. Positions are in window space.
enum class Attribute : std::uint8_t {
    // Of an application.
    windows, ///< r, elements, front first
    focusedWindow, ///< r, element
    frontmost, ///< rw, boolean: true brings it forward
    manualAccessibility, ///< w, boolean: true has it report its windows
    // Of a window.
    minimized, ///< rw, boolean
    position, ///< rw, point
    size, ///< rw, size
    fullScreen, ///< rw, boolean
    main, ///< rw, boolean: true makes it its application's main window
    // Of a window and of what is in it.
    role, ///< r, text: a role of the platform, such as "AXWindow"
    subrole, ///< r, text
    title, ///< r, text
    focused, ///< r, boolean
    // Of what is in a window; there may be none where the application doesn't show it.
    description, ///< r, text
    value, ///< r, text or number
    minValue, ///< r, number
    maxValue, ///< r, number
    // Of any of them.
    children, ///< r, elements
};

enum class Action : std::uint8_t {
    raise, ///< of a window: in front of the application's others
};

/// Other applications' windows, read and driven. Any thread. A call on an application that doesn't answer returns
/// `kAXErrorCannotComplete` within `timeout` seconds; on an element that has gone, `kAXErrorInvalidUIElement`; of an
/// attribute that the element doesn't have, `kAXErrorAttributeUnsupported`.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// Whether the user trusts this program with accessibility. With `prompt`, the user is asked if not.
    virtual bool isTrusted(bool prompt) = 0;

    virtual AXError read(const ElementID& element, Attribute attribute, double timeout, AttributeValue& value) = 0;
    virtual AXError write(const ElementID& element, Attribute attribute, double timeout, const AttributeValue& value)
        = 0;
    /// Whether the attribute can be written now.
    virtual AXError isSettable(const ElementID& element, Attribute attribute, double timeout, bool& settable) = 0;
    virtual AXError perform(const ElementID& element, Action action, double timeout) = 0;
};

}
