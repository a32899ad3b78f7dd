#include "selftest/Checks.h"

#include "diagnostics/Report.h"

namespace {

int passedChecks = 0;
int failedChecks = 0;

}

namespace SelfTest {

void report(std::string_view text)
{
    Report::line("[test] ", text);
}

void check(std::string_view label, bool holds)
{
    ++(holds ? passedChecks : failedChecks);
    report(std::string(holds ? "  PASS  " : "  FAIL  ").append(label));
}

void skip(std::string_view reason)
{
    report(std::string("  SKIP  ").append(reason));
}

void info(std::string_view text)
{
    report(std::string("  INFO  ").append(text));
}

int passed()
{
    return passedChecks;
}

int failed()
{
    return failedChecks;
}

std::string compared(std::string_view label, double a, std::string_view sign, double b)
{
    return std::string(label) + " (" + Report::number(a) + " " + std::string(sign) + " " + Report::number(b) + ")";
}

}
