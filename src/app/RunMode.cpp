#include "app/RunMode.h"

#include "diagnostics/DisplayProbe.h"
#include "diagnostics/WindowCountProbe.h"
#include "dock/Uninstaller.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSProcessInfo.h"

namespace {

struct Row {
    const char* variable;
    /// Null when any value will do, the empty one included.
    const char* accepted;
    /// Seconds.
    double delay;
    RunMode::Job job;
};

/// Of several variables the earlier row decides.
const Row rows[] = {
    { "BAR_UNINSTALL", "1", 0.3, [](const std::string&) { Uninstaller::run(false); } },
    { "BAR_PROBE_DISPLAYS", "1", 0.3, [](const std::string&) { DisplayProbe::run(); } },
    { "BAR_COUNT_APP", nullptr, 0.3, [](const std::string& fragment) { WindowCountProbe::run(fragment); } },
};

}

RunMode::RunMode(double delay, Job job, std::string value)
    : delay_(delay)
    , job_(std::move(job))
    , value_(std::move(value))
{
}

std::optional<RunMode> RunMode::requested()
{
    for (const Row& row : rows) {
        const auto value = NSProcessInfo::environment(row.variable);
        if (value && (!row.accepted || *value == row.accepted))
            return RunMode(row.delay, row.job, *value);
    }
    return std::nullopt;
}

void RunMode::schedule(std::function<void()> finished) const
{
    DispatchQueue::main().asyncAfter(delay_, [mode = *this, end = std::move(finished)] {
        mode.job_(mode.value_);
        end();
    });
}
