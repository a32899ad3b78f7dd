#pragma once

#include "base/CGGeometry.h"

#include <string>
#include <string_view>

/// What the diagnostic runs write: lines on standard error.
namespace Report {

/// The prefix, the text and a line feed.
void line(std::string_view prefix, std::string_view text);

/// "(x, y, width, height)" in whole points.
std::string rect(const CGRect& rect);
/// "WIDTHxHEIGHT" in whole points.
std::string size(const CGRect& rect);

}
