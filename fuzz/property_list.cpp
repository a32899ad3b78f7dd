// Property lists, in both formats: what is read is written and read again.

#include "Input.h"

#include "base/PropertyList.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto value = PropertyList::parse(Input::text(data, size));
    if (!value)
        return 0;
    const auto again = PropertyList::parse(PropertyList::binary(*value));
    if (!again || (again->dictionary() == nullptr) != (value->dictionary() == nullptr))
        std::abort();
    if (!PropertyList::parse(PropertyList::xml(*value)))
        std::abort();
    return 0;
}
