#pragma once

#include "appkit/NSColor.h"

#include <optional>
#include <string>
#include <string_view>

/// Colours as six hexadecimal digits, RRGGBB: the form in which the user's colours are stored.
namespace HexColor {

/// Number signs and blanks around the digits are passed over, capitals and small letters are alike. Absent for anything
/// but six hexadecimal digits. The colour is opaque.
std::optional<NSColor> parse(std::string_view text);

/// Six digits in capitals, without a number sign; the colour's alpha is lost.
std::string hexString(const NSColor& color);

}
