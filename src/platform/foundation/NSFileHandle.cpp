#include "foundation/NSFileHandle.h"

#include <unistd.h>

void NSFileHandle::writeToStandardError(std::string_view data)
{
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, data.data(), data.size());
}
