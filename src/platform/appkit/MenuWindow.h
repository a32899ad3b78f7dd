#pragma once

#include "base/CGGeometry.h"

#include <memory>

class NSMenu;
class NSView;

/// The menu that is open, as the toolkit's popup. For the layer's own use. Main thread.
namespace MenuWindow {

/// `point` is in the coordinates of the view's window. A menu that is open already closes.
void open(const std::shared_ptr<const NSMenu>& menu, const NSView& view, CGPoint point);
void close();
/// Null when none is open.
std::shared_ptr<const NSMenu> current();

}
