#pragma once

#include "appkit/NSFont.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The text, or where that is wider than `width` points in the font, as many of its first characters as fit in front of
/// "…", though at least `least` of them, which is 1 or more. A character is what a reader takes for one, whatever it is
/// made of.
std::string shortenedText(std::string_view text, const NSFont& font, double width, std::size_t least);
