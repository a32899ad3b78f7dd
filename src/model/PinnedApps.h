#pragma once

#include "foundation/NSURL.h"

#include <string>
#include <vector>

namespace DockModel {

struct PinnedApp {
    /// As it was stored, not standardised.
    NSURL bundleURL;
    std::string name;
};

/// The applications pinned in the system Dock, in its order; empty when its list can't be read. Main thread.
std::vector<PinnedApp> pinnedApps();

}
