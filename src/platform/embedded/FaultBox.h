#pragma once

#include "embedded/Faults.h"

#include <string_view>

namespace embedded {

/// Whether a call of this name is to fail; a failure that was counted is used up.
inline bool takeFailure(FailingCalls& fails, std::string_view name)
{
    const auto place = fails.find(name);
    if (place == fails.end() || place->second == 0)
        return false;
    if (place->second > 0)
        --place->second;
    return true;
}

}
