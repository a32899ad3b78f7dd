#pragma once

#include <sys/types.h>

#include <optional>

/// Which application was active before the present one; the program itself never counts. Main thread.
namespace AppHistory {

/// Follows activations for the life of the desktop. Called once, at launch; another call begins afresh.
void start();

/// Absent until the first change of application. It may have quit since.
std::optional<pid_t> previous();

}
