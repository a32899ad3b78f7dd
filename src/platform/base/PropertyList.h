#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

/// Property-list files: XML and binary are read, XML is written (the format of Apple's PropertyList-1.0 document type).
namespace PropertyList {

/// Absent when the bytes are no property list.
std::optional<Value> parse(std::string_view bytes);
std::string xml(const Value& value);

}
