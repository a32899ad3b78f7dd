#pragma once

#include "appkit/NSRunningApplication.h"

#include <optional>
#include <string>

/// The application that a probe is about, by part of its name. Small letters and capitals are alike.
namespace ProbedApplication {

bool matches(const std::string& name, const std::string& fragment);

/// The first running application whose name holds the fragment. Where there is none, or accessibility isn't permitted,
/// it says so after the prefix. Any thread.
std::optional<NSRunningApplication> find(const std::string& fragment, const char* prefix);

}
