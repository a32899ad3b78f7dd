#pragma once

#include "base/Value.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class PreferenceDomain;

/// Posted on the default centre, in a turn of its own, when another process has changed the program's own domain.
inline constexpr const char* NSUserDefaultsDidChangeNotification = "NSUserDefaultsDidChangeNotification";

/// A preference domain: one property-list file, shared with every other process that reads or writes it. What another
/// process writes is seen at the next read in a later turn of the run loop. Main thread.
class NSUserDefaults {
public:
    /// The program's own domain.
    static NSUserDefaults standard();
    /// Absent when there is no such domain to open: an empty name, or the program's own.
    static std::optional<NSUserDefaults> initWithSuiteName(const std::string& name);

    std::optional<Value> objectForKey(std::string_view key) const;
    /// False for what is no boolean, number, or text that reads as one ("YES", "true", "1").
    bool boolForKey(std::string_view key) const;
    /// 0 for what is no number, or text that begins with one.
    double doubleForKey(std::string_view key) const;
    /// The same without its fraction.
    std::int64_t integerForKey(std::string_view key) const;
    /// Text, or a number as text.
    std::optional<std::string> stringForKey(std::string_view key) const;
    /// Absent unless every element is text.
    std::optional<std::vector<std::string>> stringArrayForKey(std::string_view key) const;
    std::optional<Value::Array> arrayForKey(std::string_view key) const;
    std::optional<Value::Dictionary> dictionaryForKey(std::string_view key) const;

    /// A write that fails is logged on standard error in one line; the file stays as it was, and this process goes on
    /// with the new value, which its next write saves too.
    void setObject(Value value, std::string_view key);
    void removeObjectForKey(std::string_view key);
    /// All of them in one write of the file.
    void setValuesForKeys(const Value::Dictionary& values);
    /// The next read looks at the file, also within this turn. False while something that was set isn't saved.
    bool synchronize();

    /// While one lives, what is set in the program's own domain holds in this process alone; then it is forgotten. What
    /// else shares the domain never sees it.
    class Rehearsal {
    public:
        Rehearsal();
        ~Rehearsal();
        Rehearsal(const Rehearsal&) = delete;
        Rehearsal& operator=(const Rehearsal&) = delete;
    };

    /// All values of a domain by its name; absent when there is none.
    static std::optional<Value::Dictionary> persistentDomainForName(const std::string& name);
    /// With the program's own domain goes all that the desktop keeps for no other reason than this program.
    static void removePersistentDomainForName(const std::string& name);

private:
    explicit NSUserDefaults(std::shared_ptr<PreferenceDomain> domain)
        : domain_(std::move(domain))
    {
    }

    std::shared_ptr<PreferenceDomain> domain_;
};
