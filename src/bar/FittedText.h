#pragma once

#include "appkit/NSFont.h"

#include <string>

namespace FittedText {

/// The text, UTF-8, if it is at most so many points wide; otherwise as much of its beginning as fits together with an
/// ellipsis, at least two characters. However long the text, little more is measured than fits.
std::string shortened(const std::string& text, const NSFont& font, double width);

}
