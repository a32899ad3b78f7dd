#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace x11 {

/// What an installed application says of itself in its desktop entry, so far as is needed to find and show it.
struct DesktopEntry {
    /// The name of its file below the folder of entries, slashes turned into dashes, without ".desktop".
    std::string id;
    /// The full path of its file.
    std::string file;
    /// In the user's language.
    std::string name;
    std::string icon;
    std::string startupWmClass;
    /// The file name of the program that it runs.
    std::string executable;
    bool runsInTerminal = false;
    /// Whether menus are to leave it out.
    bool isHidden = false;
};

/// Reads the main group of an entry in one pass. Absent when it is no application, or has been deleted by the user.
/// `languages` are those of the user, the best first.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, const std::vector<std::string>& languages);

}
