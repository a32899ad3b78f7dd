#pragma once

#include "embedded/CallLog.h"
#include "host/Accessibility.h"

#include <memory>
#include <optional>
#include <string_view>
#include <thread>

namespace embedded {

class World;
struct RunningProcess;
struct Window;

/// The accessibility interface as the program sees it. The world belongs to the main thread, so a call from another
/// thread is carried out there, like a message to a real application: it waits its turn, for as long as the caller's
/// time-out allows.
class Accessibility final : public host::Accessibility {
public:
    Accessibility(World& world, CallLog& log);

    bool isTrusted(bool prompt) override;
    AXError read(const host::ElementID& element, host::Attribute attribute, double timeout,
        host::AttributeValue& value) override;
    AXError write(const host::ElementID& element, host::Attribute attribute, double timeout,
        const host::AttributeValue& value) override;
    AXError isSettable(
        const host::ElementID& element, host::Attribute attribute, double timeout, bool& settable) override;
    AXError perform(const host::ElementID& element, host::Action action, double timeout) override;

private:
    struct Request {
        Call::Kind kind;
        host::ElementID element;
        /// Absent for an action.
        std::optional<host::Attribute> attribute;
        /// By which faults and the log know it.
        std::string_view name;
        double timeout;
        /// For a write.
        host::AttributeValue value;
        /// A read of whether it can be written, rather than of what it is.
        bool asksIfSettable = false;
    };
    struct Reply {
        AXError result = kAXErrorSuccess;
        /// Of a read.
        host::AttributeValue value;
        bool hung = false;
    };

    Reply ask(const Request& request);
    Reply askMainThread(const Request& request);
    Reply answer(const Request& request);
    Reply answerUnrecorded(const Request& request);
    AXError fault(const Request& request);
    Reply readApplication(const RunningProcess& process, host::Attribute attribute) const;
    Reply readFocusedWindow(const RunningProcess& process) const;
    Reply readWindow(const Window& window, host::Attribute attribute) const;
    Reply readElement(const host::ElementID& id, host::Attribute attribute) const;
    AXError writeApplication(const RunningProcess& process, const Request& request);
    AXError writeWindow(const Window& window, const Request& request);
    std::vector<host::ElementID> namedWindows(const RunningProcess& process) const;

    World& world_;
    CallLog& log_;
    std::thread::id mainThread_ = std::this_thread::get_id();
    /// Calls of other threads that come too late find it gone.
    std::shared_ptr<Accessibility*> self_ = std::make_shared<Accessibility*>(this);
};

}
