#pragma once

#include "base/AXError.h"
#include "host/Accessibility.h"

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

/// Something that was asked of the desktop.
struct Call {
    enum class Kind {
        /// Of an accessibility attribute.
        read,
        write,
        /// Of an accessibility action.
        action,
        /// "activate", "hide", "unhide", "terminate", "forceTerminate" of a process; "open" of an application;
        /// "openURL"; "windowList"; "window"; "capture"; "key" of a process, "postKeyDown" and "postKeyUp";
        /// "tool".
        request,
    };

    /// Of the run loop's clock.
    std::uint64_t nanoseconds = 0;
    Kind kind = Kind::request;
    /// 0 where it was no process's.
    pid_t pid = 0;
    /// The window's number, or 0.
    std::uint64_t window = 0;
    /// The attribute, action or request.
    std::string name;
    /// What was written; for "open" and "openURL" the path or URL; for a key its number; for
    /// "tool" its command line.
    std::optional<host::AttributeValue> value;
    AXError result = kAXErrorSuccess;
    /// How long, in seconds, a hanging application held its caller up.
    double heldUp = 0;
};

/// The calls made on a desktop, in order, while recording is on. Main thread.
class CallLog {
public:
    void setRecording(bool on) { recording_ = on; }
    void clear() { calls_.clear(); }
    const std::vector<Call>& all() const { return calls_; }
    /// Those of one name, to any process or to one.
    std::vector<Call> named(std::string_view name, std::optional<pid_t> pid = {}) const;

    void add(Call call);

private:
    bool recording_ = false;
    std::vector<Call> calls_;
};

}
