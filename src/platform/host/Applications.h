#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct IconSource;

namespace host {

/// The installed applications, by the standardised path of their bundle ("/Applications/NAME.app"). Answers are kept,
/// so asking again is cheap and gives the same icon object. Main thread.
class Applications {
public:
    virtual ~Applications() = default;

    /// The bundle's identifier; absent when no bundle loads there or it has none.
    virtual std::optional<std::string> identifier(const std::string& path) = 0;
    /// The name a person knows the file by; absent when the desktop knows none.
    virtual std::optional<std::string> displayName(const std::string& path) = 0;
    /// The icon of the file, or the desktop's general one; null only when the desktop has neither.
    virtual std::shared_ptr<const IconSource> icon(const std::string& path) = 0;
    /// The file names ("Mail.app") of the bundles in a folder that holds the desktop's applications without there being
    /// files: those that menus show, each once, in no order. Absent when the folder is one of the file system.
    virtual std::optional<std::vector<std::string>> bundles(const std::string& folder) = 0;

    /// Launches the application, or has the running one reopen: it comes to the front with a window that it has, and
    /// makes one only where it has none. False when it can't be.
    virtual bool open(const std::string& path) = 0;
    /// Has it open one window more, in another process of it or the same, as is its way. False when it can't be.
    virtual bool openAnother(const std::string& path) = 0;
    /// Opens a folder, file or link with what handles it. `url` is an absolute URL. False when it can't be.
    virtual bool openURL(const std::string& /*url*/) { return false; }
    /// Has the application that opens folders show a file or folder in the one that it lies in, selected. `url` is an
    /// absolute file URL. False when it can't be.
    virtual bool reveal(const std::string& /*url*/) { return false; }
};

}
