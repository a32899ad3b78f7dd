#pragma once

#include "embedded/Scenario.h"
#include "embedded/ScenarioError.h"

#include <string_view>
#include <variant>

namespace embedded {

/// Reads a scenario written in JSON. Everything in it must be meant: an unknown key, a value of a wrong type, a number
/// that is given twice or one that names nothing is an error.
std::variant<Scenario, ScenarioError> parseScenario(std::string_view json);

/// A working day: two spaces, some eight applications, something in the Trash.
Scenario defaultScenario();

}
