#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

/// The next read of the domain looks at its file, also within this turn of the run loop. Main thread.
void CFPreferencesAppSynchronize(const std::string& domain);
/// Absent when the domain has no such value. Main thread.
std::optional<Value> CFPreferencesCopyAppValue(std::string_view key, const std::string& domain);
