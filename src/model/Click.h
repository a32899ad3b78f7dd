#pragma once

#include "model/BarItem.h"

/// What a button does. Main thread.
namespace DockModel {

/// One click: raises the button's window; goes back to the previous application when this one is in front with a
/// window; else activates it.
void handleClick(const BarItem& item);
/// Raises the button's window, or brings its application forward with a window of it, also where it is in front.
/// Nothing where it doesn't run.
void bringForward(const BarItem& item);
/// Brings the application forward with a window of it, or launches it.
void activate(const BarItem& item);

}
