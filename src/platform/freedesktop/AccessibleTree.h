#pragma once

#include "base/AXError.h"
#include "host/Accessibility.h"

#include <gio/gio.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace freedesktop {

/// What programs show of the inside of their windows on the accessibility bus (AT-SPI 2: the D-Bus interfaces of
/// org.a11y.atspi), which is reached at the first question. Any thread; a question waits for at most its time-out, and
/// a program that was silent once isn't asked again.
///
/// Without a bus the answer is `kAXErrorAPIDisabled`, of a program that isn't on it `kAXErrorNotImplemented`: some ask
/// only as they start whether accessibility is on.
class AccessibleTree {
public:
    AccessibleTree() = default;
    ~AccessibleTree();
    AccessibleTree(const AccessibleTree&) = delete;
    AccessibleTree& operator=(const AccessibleTree&) = delete;

    /// The windows of the program, as it shows them.
    AXError children(pid_t pid, double timeout, host::AttributeValue& value);
    /// Of an element that `children` has led to.
    AXError read(
        const host::ElementID& element, host::Attribute attribute, double timeout, host::AttributeValue& value);

private:
    /// The bus name of a program and the path of an object of it.
    using Object = std::pair<std::string, std::string>;
    using Variant = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;
    struct Question {
        const char* interface;
        const char* method;
        GVariant* arguments;
        const char* replyType;
    };
    struct Answer {
        AXError result;
        Variant content;
    };

    bool open(double timeout);
    Answer ask(const Object& object, const Question& question, double timeout);
    AXError readProperty(
        const Object& object, const char* interface, const char* name, double timeout, host::AttributeValue& value);
    AXError readChildren(const Object& object, pid_t pid, double timeout, host::AttributeValue& value);
    AXError readValue(const Object& object, double timeout, host::AttributeValue& value);
    std::optional<std::string> role(const Object& object, double timeout, AXError& error);
    std::vector<Object> objectsBelow(const Object& object, double timeout, AXError& error);
    std::optional<Object> program(pid_t pid, double timeout);
    pid_t processOf(const std::string& busName, double timeout);
    std::uint64_t number(const Object& object);
    std::optional<Object> object(std::uint64_t number);

    std::mutex opening_;
    GDBusConnection* bus_ = nullptr;

    std::mutex mutex_;
    std::map<Object, std::uint64_t> numbers_;
    std::vector<Object> objects_;
    /// The bus names of those that didn't answer in time.
    std::set<std::string> silent_;
};

}
