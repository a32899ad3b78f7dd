// Descriptions of icon themes.

#include "Input.h"

#include "freedesktop/IconTheme.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    freedesktop::IconTheme::parse(std::string(Input::text(data, size)));
    return 0;
}
