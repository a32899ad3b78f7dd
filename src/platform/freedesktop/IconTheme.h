#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace freedesktop {

/// Finds the picture file of a named icon in the user's icon theme, the themes that it inherits, and the shared folders
/// of pictures. A scalable picture is preferred, else the smallest of at least 64 pixels, else the largest. By hand, as
/// the toolkit's finds nothing before the toolkit has started, which is after the running applications were first told.
class IconTheme {
public:
    /// `name` is an icon's name or a full path. Absent when there is no such picture.
    std::optional<std::string> find(const std::string& name);

    struct Theme {
        /// Those that can hold icons of applications and files, the best to show first.
        std::vector<std::string> folders;
        std::vector<std::string> parents;
    };
    /// From the text of its "index.theme", as freedesktop.org describes icon themes. Empty where that is none.
    static Theme parse(const std::string& text);

private:
    const std::vector<std::string>& chain();
    const Theme& theme(const std::string& name);

    std::vector<std::string> chain_;
    std::unordered_map<std::string, Theme> themes_;
};

}
