#pragma once

#include <sys/types.h>

#include <unordered_map>

/// Which processes are regular applications, each asked about once: for the length of one reading. Main thread.
class RegularProcesses {
public:
    bool contains(pid_t pid);

private:
    std::unordered_map<pid_t, bool> known_;
};
