#pragma once

#include <sys/types.h>

#include <cstdint>

namespace WindowIndex {

/// Brings one window forward, un-minimised. Returns at once; it is tried once, on a queue of its own. Main thread.
void raise(std::uint32_t windowID, pid_t pid);

}
