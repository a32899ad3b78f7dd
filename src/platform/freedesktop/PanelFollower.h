#pragma once

#include "base/RunLoop.h"
#include "freedesktop/DesktopEntries.h"
#include "freedesktop/PanelDock.h"

#include <sys/types.h>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace freedesktop {

/// Has the Dock's domain tell of the desktop's panel as long as it lives: when it comes or goes, and when its settings
/// change. While no panel runs that it knows, nobody is asked anything. Main thread.
class PanelFollower {
public:
    explicit PanelFollower(DesktopEntries& entries)
        : entries_(entries)
    {
    }
    ~PanelFollower();

    /// The processes that have a dock on the screen.
    void setOwners(const std::set<pid_t>& owners);

private:
    void look();
    void follow();
    void lookSoon();

    DesktopEntries& entries_;
    std::optional<std::set<pid_t>> owners_;
    std::optional<std::vector<std::string>> programs_;
    std::vector<std::unique_ptr<PanelStore>> followed_;
    std::optional<RunLoop::Handle> looking_;
};

}
