#pragma once

#include <memory>
#include <string>
#include <vector>

namespace host {

/// A command-line tool that was launched.
class RunningTool {
public:
    virtual ~RunningTool() = default;
    /// Returns when it has ended. One that takes longer than a tool may is ended.
    virtual void wait() = 0;
};

/// The platform's command-line tools, by the paths that they have there. Main thread.
class Tools {
public:
    virtual ~Tools() = default;

    struct Run {
        std::string path;
        std::vector<std::string> arguments;
        /// What it writes goes nowhere, instead of where this process writes.
        bool isSilent = false;
    };
    /// Null when it can't be launched; `reason` says why, for people.
    virtual std::unique_ptr<RunningTool> launch(const Run& run, std::string& reason);
};

}
