#pragma once

#include "base/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One property-list file and what was last read of it.
///
/// Reading looks at the file's identity and change time, once a turn of the run loop, and reads the file again when
/// they differ. Writing takes a lock that every writing process shares, reads what is there, changes one key, writes
/// the whole to a temporary file, syncs it and renames it over the old one. A file that can't be parsed counts as
/// empty, and is set aside as "NAME.plist.damaged-N" before anything is written in its place. Main thread.
class PreferenceDomain {
public:
    /// The one object for a domain in the session's preference folder.
    static std::shared_ptr<PreferenceDomain> named(const std::string& name);
    /// Forgets all of them: between tests.
    static void forgetAll();

    explicit PreferenceDomain(std::string file);

    const Value* find(std::string_view key);
    void set(std::string_view key, std::optional<Value> value);

private:
    struct Stamp {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t changed = 0;
        bool operator==(const Stamp&) const = default;
    };
    enum class Condition { sound, missing, damaged, unreadable };

    void refresh();
    void load();
    Stamp stamp() const;
    /// Empty on success, else the reason.
    std::string store(const Value::Dictionary& values);
    std::string setAside() const;

    std::string file_;
    Stamp stamp_;
    std::optional<std::uint64_t> checkedTurn_;
    Condition condition_ = Condition::missing;
    Value::Dictionary values_;
};
