#pragma once

#include <optional>
#include <string>
#include <vector>

/// What starts when the user logs in: desktop entries in the user's own autostart folder, by the freedesktop.org rules
/// for autostart. Any thread.
namespace freedesktop::Autostart {

struct Entry {
    /// For people.
    std::string name;
    std::string comment;
    /// The program, by its full path, and its arguments.
    std::vector<std::string> command;
    /// False where the user has switched it off in the desktop's own settings. What is written is on.
    bool isOn = true;
};

/// `identifier` is the file's name without ".desktop". Absent when there is none to be read.
std::optional<Entry> read(const std::string& identifier);
/// Writes it anew. Empty on success, else the reason, for people.
std::string write(const std::string& identifier, const Entry& entry);
/// Empty on success, else the reason; that there is none is one.
std::string remove(const std::string& identifier);

}
