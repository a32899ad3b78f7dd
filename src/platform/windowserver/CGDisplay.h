#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The UUID of a display, as text; absent when there is no such display or it has none.
std::optional<std::string> CGDisplayCreateUUIDFromDisplayID(std::uint32_t displayID);
