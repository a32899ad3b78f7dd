#pragma once

#include <functional>
#include <optional>
#include <string>

/// A diagnostic run in place of the bar: one job, selected by an environment variable, after which the process ends.
class RunMode {
public:
    using Job = std::function<void(const std::string& value)>;

    /// The first one whose variable holds what it asks for.
    static std::optional<RunMode> requested();

    /// Runs the job on the main queue after its delay, then `finished`. Returns at once.
    void schedule(std::function<void()> finished) const;

private:
    RunMode(double delay, Job job, std::string value);

    double delay_;
    Job job_;
    std::string value_;
};
