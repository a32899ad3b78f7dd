// The command line of the program.

#include "Input.h"

#include "launch/CommandLine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CommandLine::parse(Input::lines(Input::text(data, size)));
    return 0;
}
