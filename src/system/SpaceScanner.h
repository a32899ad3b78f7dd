#pragma once

#include "system/Space.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The spaces of the window server, and which windows lie on them. Nothing is cached, nothing fails: what can't be read
/// is empty. Main thread.
namespace SpaceScanner {

/// The one active space that the window server reports.
std::uint64_t activeSpaceID();

/// By the display's identifier (`DisplayInfo::cgsIdentifier`).
std::map<std::string, std::uint64_t, std::less<>> activeSpacesByDisplay();

/// The active space of a display; for one without an identifier, or one that the window server doesn't list, the one
/// active space.
std::uint64_t activeSpaceIDForDisplay(const std::optional<std::string>& cgsIdentifier);

/// One call of the window server each time.
std::vector<std::uint64_t> spaceIDsForWindow(std::uint32_t window);

/// The spaces of the first display, with the ordinary windows of regular applications that lie on them.
std::vector<Space> scan();

}
