#pragma once

#include "settings/Choice.h"

#include <string>
#include <string_view>

/// What the groups of the self-test report. Main thread.
namespace SelfTest {

/// A line; an empty one separates the groups.
void report(std::string_view text);
/// Counts whether it holds, and reports it.
void check(std::string_view label, bool holds);
/// What can't be tested on this machine, and why. Doesn't count.
void skip(std::string_view reason);
/// Doesn't count either.
void info(std::string_view text);

int passed();
int failed();

/// Writes each value in turn and checks that it reads back.
template <ChoiceEnum Enum, class Setting>
void checkRoundTrips(std::string_view name, const Setting& setting)
{
    for (const Enum value : allCases<Enum>()) {
        setting.set(value);
        check(std::string(name) + " round-trips " + std::string(rawValue(value)), setting() == value);
    }
}

/// "LABEL (A SIGN B)"
std::string compared(std::string_view label, double a, std::string_view sign, double b);

}
