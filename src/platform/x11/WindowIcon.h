#pragma once

#include "base/IconSource.h"
#include "x11/Property.h"

#include <vector>

namespace x11 {

/// The pictures of a `_NET_WM_ICON` property; those that are cut off, or of no sensible size, are left out.
std::vector<IconSource::Pixels> iconPixels(std::span<const std::uint32_t> numbers);

/// The most that is transferred of such a property, in units of four bytes.
inline constexpr std::uint32_t iconLongs = 512 * 1024;

}
