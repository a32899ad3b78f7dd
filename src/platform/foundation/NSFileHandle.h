#pragma once

#include <string_view>

/// Standard error.
namespace NSFileHandle {

/// Writes the bytes in one piece; a failure is ignored. Any thread.
void writeToStandardError(std::string_view data);

}
