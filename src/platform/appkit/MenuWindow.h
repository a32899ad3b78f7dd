#pragma once

#include "base/CGGeometry.h"

#include <memory>
#include <string>

class NSMenu;
class NSMenuItem;
class NSView;
class QRect;

/// The menu that is open, as the toolkit's popup. For the layer's own use. Main thread.
namespace MenuWindow {

/// `point` is in the coordinates of the view's window. A menu that is open already closes.
void open(const std::shared_ptr<const NSMenu>& menu, const NSView& view, CGPoint point);
/// Beside an item, on the side with more room. In the toolkit's pixels.
void openBeside(const std::shared_ptr<const NSMenu>& menu, const QRect& item, const QRect& room);
void close();
/// Null when none is open.
std::shared_ptr<const NSMenu> current();

/// What the user presses for the entry while its menu is open, by what is written on the keys; empty for nothing.
std::string keys(const NSMenuItem& item);

}
