#pragma once

#include <cstdint>

/// How high above other windows a bar floats.
namespace BarLevel {

/// The window level that the environment variable BAR_LEVEL names: "status", "floating", "screensaver", "maximum" or
/// "shielding"; that of pop-up menus when it names none of these. Logs its answer.
std::int32_t resolve();

}
