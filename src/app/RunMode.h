#pragma once

#include <functional>
#include <optional>
#include <string>

/// A diagnostic run in place of the bar: one job, selected by an environment variable, after which the process ends.
class RunMode {
public:
    using End = std::function<void()>;
    /// Returns at once. What it begins is given the variable's value, and calls `end` on the main thread when it is
    /// over, unless it ends the process itself.
    using Start = std::function<void(const std::string& value, const End& end)>;

    /// The first one whose variable holds what it asks for.
    static std::optional<RunMode> requested();

    void start(const End& end) const { start_(value_, end); }

private:
    RunMode(Start start, std::string value);

    Start start_;
    std::string value_;
};
