#pragma once

/// The desktop's own launcher. Main thread.
namespace NativeLauncher {

/// Presses the launcher's keys, Command and the space bar. It opens if the user left it that shortcut; nobody tells.
void openSpotlight();

}
