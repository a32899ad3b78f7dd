#pragma once

#include <optional>
#include <string>

/// The Dock's settings as they were before the first change, in two copies. Main thread.
namespace DockPrefs {

/// Takes the backup, once: what there is already is never taken anew.
void captureBackupIfNeeded();
/// The full path of the first copy that exists.
std::optional<std::string> usableBackup();
inline bool hasBackup()
{
    return usableBackup().has_value();
}

}
