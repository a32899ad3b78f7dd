#pragma once

#include <string>
#include <string_view>

enum class NSComparisonResult { orderedAscending = -1, orderedSame = 0, orderedDescending = 1 };

/// Compares UTF-8 texts as the user's language orders them, capitals and small letters alike.
NSComparisonResult localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);

/// UTF-8 text in small letters, of any script.
std::string lowercaseString(std::string_view text);

/// Without the spaces, of any width, and tabs at both ends; line breaks stay.
std::string stringByTrimmingWhitespaces(std::string_view text);
