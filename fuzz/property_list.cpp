// Property lists: what is read is written in the format that it came in, and is the same when it is read again.

#include "Input.h"

#include "base/PropertyList.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = Input::text(data, size);
    const auto value = PropertyList::parse(bytes);
    if (!value)
        return 0;
    const bool isBinary = PropertyList::isBinary(bytes);
    const auto write = isBinary ? PropertyList::binary : PropertyList::xml;
    const auto again = PropertyList::parse(write(*value));
    // Of equal binary values the library doesn't always write equal bytes.
    if (!again || PropertyList::xml(*again) != PropertyList::xml(*value))
        std::abort();
    return 0;
}
