#pragma once

#include <functional>
#include <memory>
#include <string>

/// Tells, within a tenth of a second, that a file may have come, changed or gone: rewritten, replaced, or with its
/// folder. Costs nothing while nothing happens. Main thread.
class FileWatch {
public:
    /// `look` runs in a turn of its own, once for all that happens at a time.
    FileWatch(std::string file, std::function<void()> look);
    ~FileWatch();

private:
    class Watcher;
    std::unique_ptr<Watcher> watcher_;
};
