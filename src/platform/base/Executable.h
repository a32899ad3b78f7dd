#pragma once

#include <sys/types.h>

#include <string>

/// The full path of the program that a process runs, also after that was replaced or removed; empty when the process is
/// gone or another user's. Any thread.
std::string executableOf(pid_t pid);
