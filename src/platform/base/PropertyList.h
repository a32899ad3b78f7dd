#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

/// Property-list files, XML (the format of Apple's PropertyList-1.0 document type) and binary. What is read is written
/// back unharmed in the format that it came in; XML has no room for some of what binary holds (parts of a second, the
/// identifiers of archives). Nothing here depends on the locale. Any thread.
namespace PropertyList {

/// Absent when the bytes are no property list.
std::optional<Value> parse(std::string_view bytes);
bool isBinary(std::string_view bytes);
std::string xml(const Value& value);
std::string binary(const Value& value);

}
