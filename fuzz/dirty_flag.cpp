// The flag of a run that has changed the Dock.

#include "Input.h"

#include "dock/DirtyFlag.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(Input::text(data, size));
    if (DockRepair::parseFlag(text).text != text)
        std::abort();
    return 0;
}
