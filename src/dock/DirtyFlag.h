#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

/// The flag that stands while the system's settings are changed: a file, raised before the first change and lowered
/// after the last one is undone. Main thread.
namespace DockRepair {

/// One that is raised already keeps its holder.
void markDirty();
void clearDirty();
bool isDirty();

struct DirtyFlag {
    /// The instance that raised it; absent when the flag doesn't tell.
    std::optional<pid_t> holder;
    std::string text;
};
/// What stands in a flag's file, whatever that is.
DirtyFlag parseFlag(std::string text);
/// Absent when none is raised, or it can't be read.
std::optional<DirtyFlag> readFlag();
/// Raises one that was read, whoever's it is.
void raiseAgain(const DirtyFlag& flag);

}
