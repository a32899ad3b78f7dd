#pragma once

#include "base/Value.h"

#include <optional>

/// The elements of an array of nothing but dictionaries; empty for anything else. They live as long as `value`.
const Value::Array& dictionaries(const std::optional<Value>& value);
