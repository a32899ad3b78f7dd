// Scenario files.

#include "Input.h"

#include "embedded/ScenarioFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    embedded::parseScenario(Input::text(data, size));
    return 0;
}
