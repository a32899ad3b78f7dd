#pragma once

#include "base/Value.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// One property-list file that several processes read and write: what is on the disk, nothing remembered.
///
/// Writing takes a lock that every writing process shares ("NAME.plist.lock") and puts a new file, synced, in the place
/// of the old one, or of what that links to. A file that can't be parsed is renamed to "NAME.plist.damaged-N" before
/// anything is written in its place. Any thread, as long as each object stays on one.
class PreferenceFile {
public:
    /// Which file was read, and as of when. Equal stamps, equal contents.
    struct Stamp {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t changed = 0;
        bool operator==(const Stamp&) const = default;
    };
    enum class Condition { sound, missing, damaged, unreadable };
    struct Contents {
        Stamp stamp;
        Condition condition = Condition::missing;
        bool isBinary = false;
        /// Empty unless the file is sound.
        Value::Dictionary values;
    };
    /// Of the values, and where it matters of the format.
    using Change = std::function<void(Contents& contents)>;

    explicit PreferenceFile(std::string path)
        : path_(std::move(path))
    {
    }

    const std::string& path() const { return path_; }
    Stamp stamp() const;
    Contents read() const;
    /// Changes what is there by then, which is read again unless it is still as `contents` has it, and writes the whole
    /// in the format that it came in; `contents` is then what was written. Empty on success, else the reason, and the
    /// file is as it was. A lock that another process keeps is waited for two seconds.
    std::string change(Contents& contents, const Change& change) const;
    /// Takes the file away, under the lock too. Empty on success, or where there is none; else the reason.
    std::string remove() const;

private:
    /// Empty when the lock was taken and the work succeeded.
    std::string locked(const std::function<std::string()>& work) const;
    std::string write(Contents& contents) const;
    std::string setAside(Contents& contents) const;

    std::string path_;
};

/// The whole file, whatever size it says it has; absent when it can't be read. Any thread.
std::optional<std::string> readFile(const std::string& path);

/// Puts a file, whole and synced, in the place of what is there or of what that links to. `mode` is for a new file; an
/// old one's is kept. Empty on success, else the reason.
std::string replaceFile(const std::string& path, std::string_view bytes, unsigned mode);
