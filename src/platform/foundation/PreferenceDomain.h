#pragma once

#include "base/PreferenceFile.h"
#include "base/RunLoop.h"
#include "base/Value.h"
#include "foundation/FileWatch.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// One property-list file and what was last read of it.
///
/// Reading looks at the file's identity and change time, once a turn of the run loop, and reads the file again when
/// they differ. Writing changes some keys; the others and the file's format stay as they are by then. A file that can't
/// be parsed counts as empty. Main thread.
class PreferenceDomain {
public:
    /// A key without a value goes.
    using Changes = std::map<std::string, std::optional<Value>, std::less<>>;

    /// The one object for a domain in the session's preference folder.
    static std::shared_ptr<PreferenceDomain> named(const std::string& name);

    explicit PreferenceDomain(std::string file);
    ~PreferenceDomain();
    PreferenceDomain(const PreferenceDomain&) = delete;
    PreferenceDomain& operator=(const PreferenceDomain&) = delete;

    const Value* find(std::string_view key);
    const Value::Dictionary& values();
    /// One write of the file. When it fails, which one line on standard error says, the changes hold in this process
    /// and go into its next write. A lock that another process keeps is waited for two seconds.
    void set(const Changes& changes);
    void set(std::string_view key, std::optional<Value> value) { set({ { std::string(key), std::move(value) } }); }
    /// Takes the file away with all that it holds. A failure is told as that of a write is.
    void removeAll();
    /// From now on what is set holds in this process and isn't written.
    void holdBack() { isHeldBack_ = true; }
    /// Forgets what was set since, and writes again.
    void forgetHeldBack();
    /// The next read looks at the file, also within this turn.
    void synchronize() { checkedTurn_.reset(); }
    /// Whether the file holds all that was set.
    bool isSaved() const { return unsaved_.empty(); }

    /// From now on the file is watched, and `told` runs in a turn of its own after another process has changed a value.
    void follow(std::function<void()> told);
    bool isFollowed() const { return watch_ != nullptr; }

private:
    void refresh();
    void tellFailure(const std::string& what, const std::string& reason) const;
    void tellUnless(const Value::Dictionary& same);
    void load();
    static void apply(const Changes& changes, Value::Dictionary& values);

    PreferenceFile file_;
    PreferenceFile::Contents known_;
    std::optional<std::uint64_t> checkedTurn_;
    Changes unsaved_;
    bool isHeldBack_ = false;
    std::function<void()> told_;
    std::unique_ptr<FileWatch> watch_;
    std::optional<RunLoop::Handle> telling_;
};
