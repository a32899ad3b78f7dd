#pragma once

#include "foundation/NSURL.h"

#include <optional>
#include <string>
#include <vector>

/// Files, by the platform's paths. Main thread.
class NSFileManager {
public:
    static NSFileManager& defaultManager();

    /// The names in a folder, in no order; absent when it can't be listed.
    std::optional<std::vector<std::string>> contentsOfDirectory(const std::string& path, bool skipsHiddenFiles = false);
    /// Whether there is anything in a folder of files; false when it can't be listed. Costs no more for a full one.
    bool hasContents(const std::string& path, bool skipsHiddenFiles = false);
    /// Moves a file or folder to the user's Trash. False when it stays where it is.
    bool trashItemAtURL(const NSURL& url);
    /// The name a person knows the file by: that of the desktop, else the last part of the path.
    std::string displayNameAtPath(const std::string& path);
};

/// The user's home folder.
std::string NSHomeDirectory();
