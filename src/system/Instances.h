#pragma once

#include <sys/types.h>

/// The processes that run this program. Main thread.
namespace Instances {

/// Of this program, and alive; a number that another program has by now is no instance.
bool contains(pid_t pid);
/// Whether there is one beside this.
bool anotherRuns();

}
