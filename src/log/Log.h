#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

/// One-line messages on standard error, for whoever runs the program with "BAR_DEBUG" set to "1"; silent otherwise. Any
/// thread.
namespace Log {

/// Worked out once, at the first use.
bool enabled();

/// Writes a finished message, when logging is on. A message begins with its area in small letters and a colon.
void debug(std::string_view message);

inline void append(std::string& message, std::string_view text)
{
    message += text;
}

inline void append(std::string& message, std::same_as<bool> auto value)
{
    message += value ? "true" : "false";
}

template <std::integral Integer>
requires(!std::same_as<Integer, bool>) void append(std::string& message, Integer value)
{
    message += std::to_string(value);
}

/// Writes a message put together from texts, whole numbers and booleans. With logging off nothing is put together.
template <class... Parts>
requires(sizeof...(Parts) > 1) void debug(const Parts&... parts)
{
    if (!enabled())
        return;
    std::string message;
    (append(message, parts), ...);
    debug(std::string_view(message));
}

/// Where lines go, each with its prefix and line feed. Setting one switches logging on; none switches it off. For
/// tests, while no other thread runs.
using Sink = std::function<void(std::string_view line)>;
void setSink(Sink sink);

}
