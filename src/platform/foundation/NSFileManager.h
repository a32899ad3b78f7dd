#pragma once

#include "foundation/NSError.h"
#include "foundation/NSURL.h"

#include <optional>
#include <string>
#include <vector>

/// Files, by the platform's paths or this machine's. Main thread.
class NSFileManager {
public:
    static NSFileManager& defaultManager();

    /// The names in a folder, in no order; absent when it can't be listed.
    std::optional<std::vector<std::string>> contentsOfDirectory(const std::string& path, bool skipsHiddenFiles = false);
    /// Whether there is anything in a folder of files; false when it can't be listed. Costs no more for a full one.
    bool hasContents(const std::string& path, bool skipsHiddenFiles = false);
    bool fileExists(const std::string& path);
    /// Absent on success; a folder that exists already is one.
    std::optional<NSError> createDirectory(const std::string& path);
    /// A file, whole or not at all. Absent on success. What stands at the target's place already is a failure.
    std::optional<NSError> copyItem(const std::string& path, const std::string& target);
    /// A file or folder, likewise.
    std::optional<NSError> moveItem(const std::string& path, const std::string& target);
    /// With all that it holds. Absent on success.
    std::optional<NSError> removeItem(const std::string& path);
    std::optional<NSError> setPosixPermissions(const std::string& path, unsigned permissions);
    /// Absent when it can't be read.
    std::optional<std::string> contentsOfFile(const std::string& path);
    /// Whole or not at all, in the place of what is there. Absent on success.
    std::optional<NSError> writeAtomically(const std::string& text, const std::string& path);
    /// The folder in which programs keep what they need; empty when there is none.
    std::string applicationSupportDirectory();
    /// Moves a file or folder to the user's Trash. False when it stays where it is.
    bool trashItemAtURL(const NSURL& url);
    /// The name a person knows the file by: that of the desktop, else the last part of the path.
    std::string displayNameAtPath(const std::string& path);
};

/// The user's home folder.
std::string NSHomeDirectory();
