#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace embedded {

/// Which process uses a session's folder: the first that locks the file "lock" in it. The lock goes with the process.
class SessionLock {
public:
    explicit SessionLock(const std::string& folder);
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    /// The process that was there before this one.
    std::optional<pid_t> other() const { return other_; }

private:
    int file_;
    std::optional<pid_t> other_;
};

}
