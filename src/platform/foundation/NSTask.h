#pragma once

#include "foundation/NSError.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {
class RunningTool;
}

/// A command-line tool, run as a process of its own. Main thread.
class NSTask {
public:
    NSTask(std::string executablePath, std::vector<std::string> arguments);
    NSTask(NSTask&& other) noexcept;
    ~NSTask();

    /// What the tool writes goes to the null device.
    void discardOutput() { isSilent_ = true; }
    /// Absent when it was launched.
    std::optional<NSError> launchAndReturnError();
    /// A tool that doesn't end within some seconds is ended.
    void waitUntilExit();

private:
    std::string executablePath_;
    std::vector<std::string> arguments_;
    bool isSilent_ = false;
    std::unique_ptr<host::RunningTool> running_;
};
