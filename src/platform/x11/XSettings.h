#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace x11 {

/// The whole numbers among the settings that a settings manager keeps in its window's property (XSETTINGS), by name.
/// Anybody may have written it: what comes after a fault is left out.
std::map<std::string, std::int32_t> readXSettings(std::string_view property);

}
