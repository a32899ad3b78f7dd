#include "app/RunMode.h"

#include "diagnostics/AXTreeProbe.h"
#include "diagnostics/CaptureProbe.h"
#include "diagnostics/DisplayProbe.h"
#include "diagnostics/FullScreenProbe.h"
#include "diagnostics/WindowCountProbe.h"
#include "diagnostics/WindowProbe.h"
#include "dock/Uninstaller.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSProcessInfo.h"
#include "selftest/SelfTest.h"

namespace {

using End = RunMode::End;
using Start = RunMode::Start;

/// On the main queue, so many seconds from now.
template <class Job>
Start onMainQueue(double delay, Job job)
{
    return [=](const std::string& value, const End& end) {
        DispatchQueue::main().asyncAfter(delay, [=] {
            if constexpr (std::is_invocable_v<Job, std::string>)
                job(value);
            else
                job();
            end();
        });
    };
}

Start onGlobalQueue(void (*job)(const std::string&))
{
    return [=](const std::string& value, const End& end) {
        DispatchQueue::global().async([=] {
            job(value);
            DispatchQueue::main().async(end);
        });
    };
}

/// On the main thread, and over when it says so.
Start asynchronously(void (*job)(std::function<void()> completion))
{
    return [=](const std::string&, const End& end) { DispatchQueue::main().async([=] { job(end); }); };
}

/// The job's last step ends the process.
Start endingItself(double delay, void (*job)())
{
    return [=](const std::string&, const End&) { DispatchQueue::main().asyncAfter(delay, job); };
}

struct Row {
    const char* variable;
    /// Null when any value will do, the empty one included.
    const char* accepted;
    Start start;
};

/// Of several variables the earlier row decides.
const Row rows[] = {
    { "BAR_UNINSTALL", "1", endingItself(0.3, [] { Uninstaller::run(false); }) },
    { "BAR_PROBE_CAPTURE", "1", asynchronously(CaptureProbe::run) },
    { "BAR_PROBE_DISPLAYS", "1", onMainQueue(0.3, DisplayProbe::run) },
    { "BAR_SELFTEST", "1", onMainQueue(0.5, SelfTest::run) },
    { "BAR_AXTREE_APP", nullptr, onGlobalQueue(AXTreeProbe::run) },
    { "BAR_COUNT_APP", nullptr, onMainQueue(0.3, WindowCountProbe::run) },
    { "BAR_PROBE_APP", nullptr, onMainQueue(0.5, WindowProbe::run) },
    { "BAR_PROBE", "1", onMainQueue(1.0, FullScreenProbe::run) },
};

}

RunMode::RunMode(Start start, std::string value)
    : start_(std::move(start))
    , value_(std::move(value))
{
}

std::optional<RunMode> RunMode::requested()
{
    for (const Row& row : rows) {
        const auto value = NSProcessInfo::environment(row.variable);
        if (value && (!row.accepted || *value == row.accepted))
            return RunMode(row.start, *value);
    }
    return std::nullopt;
}
