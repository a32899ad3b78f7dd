#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>

/// Measured durations on standard error, for whoever runs the program with "BAR_TIMING" set to "1"; silent otherwise.
/// Any thread.
namespace Timing {

/// Worked out once, at the first use.
bool enabled();

/// The monotonic uptime clock, in nanoseconds; answers also while timing is off.
std::uint64_t now();

/// Writes how long ago `start` was.
void since(std::uint64_t start, std::string_view label);

/// Runs the body, writes how long it took, and gives its result.
template <class Body>
std::invoke_result_t<Body> measure(std::string_view label, Body&& body)
{
    if (!enabled())
        return std::invoke(std::forward<Body>(body));

    struct AtExit {
        std::uint64_t start;
        std::string_view label;
        ~AtExit() { since(start, label); }
    };
    const AtExit report { now(), label };
    return std::invoke(std::forward<Body>(body));
}

}
