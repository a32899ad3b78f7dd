#pragma once

namespace DockPrefs {

/// Looks every 3 seconds whether something has put the Dock back to full size, and if so and while the user wants it
/// behind the bar puts it there again. Again: anew, with another height in points. Main thread.
void startDriftWatch(double barHeight);

}
