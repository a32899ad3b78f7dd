#pragma once

#include "appkit/NSAccessibilityElement.h"

#include <functional>
#include <vector>

class QRect;
class QWidget;

/// A widget that shows more than the toolkit knows of.
class AccessibleSource {
public:
    virtual NSAccessibilityRole accessibilityRole() const = 0;
    /// What it shows now.
    virtual std::vector<NSAccessibilityElement> accessibilityChildren() const = 0;
    /// An element's frame in the widget's pixels, y down.
    virtual QRect pixels(const CGRect& frame) const = 0;
    /// Does what an element's press is, while there is still somebody to do it.
    virtual void carryOut(const std::function<void()>& press) = 0;

protected:
    ~AccessibleSource() = default;
};

/// How such widgets stand in the toolkit's accessibility tree: with a child for each of their elements, which stays the
/// same as long as its element is there. For the layer's own use. Main thread.
namespace AccessibleView {

/// Puts the widgets that are sources into the tree, once anybody asks.
void start();
/// What the widget shows may have changed. While nobody listens this costs nothing.
void update(QWidget& source);

}
