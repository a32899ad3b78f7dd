#pragma once

#include <string>

namespace DockRepair {

/// Where the flag, the backup and the repair script lie, as a full path. Made when it isn't there. Main thread.
std::string supportDirectory();

/// Where the second copy of the backup lies; likewise.
std::string recoveryDirectory();

}
