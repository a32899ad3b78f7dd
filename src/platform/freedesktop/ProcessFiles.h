#pragma once

#include <sys/types.h>

#include <string>

namespace freedesktop {

/// The whole file; empty when it can't be read.
std::string contentsOf(const std::string& path);

/// The file name of the program that a process runs: for an interpreter, of the script. Empty when it can't be known.
std::string programOf(pid_t pid);

}
