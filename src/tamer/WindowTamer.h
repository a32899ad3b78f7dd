#pragma once

/// Keeps other programs' windows clear of the bar. Twice a second floating windows of any program are lifted off it,
/// and the focused window is resized, moved, or brought back from full screen. Nothing else is touched. Main thread.
namespace WindowTamer {

/// Begins to tick, for the life of the desktop.
void start();
/// Whether the focused window is looked after.
bool isEnabled();

}
