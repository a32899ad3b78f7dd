#pragma once

#include <string>

namespace freedesktop {

/// A program of the user's that is ended, and starts again as it had been started when this goes, or when this process
/// ends, however it does.
class PanelRestart {
public:
    /// Does nothing where no such program runs.
    explicit PanelRestart(const std::string& program);
    ~PanelRestart();
    PanelRestart(const PanelRestart&) = delete;
    PanelRestart& operator=(const PanelRestart&) = delete;

    /// Whether none runs now.
    bool hasEnded() const { return hasEnded_; }

private:
    /// Whoever starts it again waits for this to be closed.
    int held_ = -1;
    bool hasEnded_ = true;
};

}
