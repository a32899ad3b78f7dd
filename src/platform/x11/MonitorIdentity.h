#pragma once

#include "x11/Monitors.h"

namespace x11 {

/// A text of the form of a UUID that stays the same for the monitor, whatever else is attached.
std::string monitorUuid(const Monitor& monitor);
/// A number each, by the monitors' names: never 0, all different.
std::vector<std::uint32_t> monitorNumbers(const std::vector<Monitor>& monitors);

}
