#pragma once

#include "host/Tools.h"

#include <chrono>
#include <map>

namespace freedesktop {

/// The platform's tools, each a program of our own beside this one; other paths are run as they stand. A tool that
/// takes longer than a tool may is killed, and not run again for a while: so one that hangs holds nothing up for long.
/// Main thread.
class Tools final : public host::Tools {
public:
    std::unique_ptr<host::RunningTool> launch(const Run& run, std::string& reason) override;

private:
    /// By its path, until when a tool that didn't end isn't run again.
    std::map<std::string, std::chrono::steady_clock::time_point> hanging_;
};

}
