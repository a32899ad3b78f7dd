#pragma once

namespace DockRepair {

/// Gives the system's settings back where a run before this one left its flag raised and isn't there any more. Call at
/// launch, before anything of the system is changed. Main thread.
void repairIfNeeded();

}
