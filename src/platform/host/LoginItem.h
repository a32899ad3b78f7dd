#pragma once

#include <string>

namespace host {

/// The program's entry among those that start when the user logs in. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    enum class Status {
        notRegistered = 0,
        enabled = 1,
        /// Registered, and switched off by the user in the desktop's own settings.
        requiresApproval = 2,
        notFound = 3,
    };
    virtual Status status() { return Status::notFound; }
    /// Makes the entry, or makes it anew: for this program where it now is, switched on. Empty on success, else the
    /// reason, for people.
    virtual std::string registerItem();
    /// Empty on success, else the reason; that there is no entry is one.
    virtual std::string unregisterItem();
};

}
