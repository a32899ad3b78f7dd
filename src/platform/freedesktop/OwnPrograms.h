#pragma once

#include <string>

namespace freedesktop {

/// The full path of the program that runs in this process.
std::string ownExecutable();
/// The full path of one that was installed beside it.
std::string besideOwnExecutable(const std::string& name);

}
