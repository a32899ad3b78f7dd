#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct IconSource;

namespace host {

enum class ActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// A running application as the desktop sees it. A record never changes; a change makes a new record.
struct Process {
    pid_t pid = 0;
    ActivationPolicy policy = ActivationPolicy::regular;
    std::optional<std::string> bundleIdentifier;
    /// The path of the application's bundle.
    std::optional<std::string> bundlePath;
    std::optional<std::string> localizedName;
    std::shared_ptr<const IconSource> icon;
    bool isHidden = false;
};

enum class ProcessEvent { launched, terminated, activated, hidden, unhidden };

/// The running applications and what can be asked of them. Requests return at once; true means that the request was
/// made, and its effect shows later as an event. Main thread.
class Processes {
public:
    virtual ~Processes() = default;

    /// In the order in which they were launched, our own process included. Valid until control returns to the run loop.
    virtual const std::vector<std::shared_ptr<const Process>>& running() = 0;
    /// Null when no such application runs.
    virtual std::shared_ptr<const Process> find(pid_t pid) = 0;
    virtual std::optional<pid_t> frontmost() = 0;

    virtual bool activate(pid_t pid) = 0;
    virtual bool hide(pid_t pid) = 0;
    virtual bool unhide(pid_t pid) = 0;
    virtual bool terminate(pid_t pid) = 0;
    virtual bool forceTerminate(pid_t pid) = 0;

    /// Set by the layer. For `terminated` the record is the last one there was.
    std::function<void(ProcessEvent, const std::shared_ptr<const Process>&)> onEvent;
};

}
