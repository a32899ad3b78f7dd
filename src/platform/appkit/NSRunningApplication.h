#pragma once

#include "appkit/NSImage.h"
#include "foundation/NSURL.h"

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {
struct Process;
}

enum NSApplicationActivationPolicy {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
    NSApplicationActivationPolicyProhibited = 2
};

/// A running application. What it tells is as of when it was asked for, but for `isHidden` and `isActive`, which are as
/// of now. A request to one that has quit does nothing. Main thread.
class NSRunningApplication {
public:
    explicit NSRunningApplication(std::shared_ptr<const host::Process> process)
        : process_(std::move(process))
    {
    }

    static std::optional<NSRunningApplication> runningApplication(pid_t pid);
    static std::vector<NSRunningApplication> runningApplications(const std::string& bundleIdentifier);

    pid_t processIdentifier() const;
    int activationPolicy() const;
    const std::optional<std::string>& bundleIdentifier() const;
    std::optional<NSURL> bundleURL() const;
    const std::optional<std::string>& localizedName() const;
    std::optional<NSImage> icon() const;

    bool isHidden() const;
    /// Whether it is the one in front.
    bool isActive() const;
    bool hide() const;
    bool unhide() const;
    bool activate() const;
    bool terminate() const;
    bool forceTerminate() const;

private:
    std::shared_ptr<const host::Process> process_;
};
