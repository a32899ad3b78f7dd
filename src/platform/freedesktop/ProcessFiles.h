#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace freedesktop {

/// The whole file; empty when it can't be read.
std::string contentsOf(const std::string& path);

/// The file name of the program that a process runs: for an interpreter, of the script. Empty when it can't be known.
std::string programOf(pid_t pid);

/// The strings of a file that each end with a zero byte.
std::vector<std::string> stringsOf(const std::string& path);

/// A process of the user's own, on the display of this one, that runs the program of that file name; 0 when there is
/// none.
pid_t processOf(const std::string& program);

}
