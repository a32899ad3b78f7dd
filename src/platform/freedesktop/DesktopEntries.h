#pragma once

#include "freedesktop/DesktopEntry.h"

#include <sys/types.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace freedesktop {

/// Whether windows of the one entry can be what the other entry starts: both run one program or name one class, or the
/// other only runs whichever file manager is to be run.
bool isStartedBy(const DesktopEntry& ofWindows, const DesktopEntry& starter);

/// The installed applications' desktop entries. They are read when one is first asked for, all in one go, and again
/// when something is looked for in vain after a folder has changed. An entry, once handed out, stays as it is.
class DesktopEntries {
public:
    /// An installed application and the bundle that it stands for.
    struct Installed {
        DesktopEntry entry;
        /// "/Applications/NAME.app"
        std::string bundlePath;
    };
    using Handle = std::shared_ptr<const Installed>;

    /// Those that menus show, each program once, as the folders are now.
    std::vector<Handle> visible();

    /// Null when there is none.
    Handle withPath(std::string_view bundlePath);
    Handle withId(std::string_view id);
    /// The entry of a running program, by its window's class and instance, else by what its process runs.
    Handle ofWindow(const std::string& className, const std::string& instanceName, pid_t pid);

private:
    struct Folder {
        std::string path;
        /// When its list of files last changed, in nanoseconds.
        long long changed;
        bool operator==(const Folder&) const = default;
    };

    using Index = std::unordered_map<std::string_view, Handle>;

    Handle find(const Index& index, std::string_view key);
    Handle search(const std::string& className, const std::string& instanceName, pid_t pid) const;
    bool readIfChanged();

    std::vector<Folder> folders_;
    std::vector<Handle> entries_;
    /// The keys are the entries' own texts.
    Index byPath_;
    Index byId_;
};

}
