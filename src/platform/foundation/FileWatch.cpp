#include "foundation/FileWatch.h"

#include "base/RunLoop.h"

#include <QFile>
#include <QFileSystemWatcher>

#include <filesystem>
#include <optional>

namespace {

namespace fs = std::filesystem;

/// Seconds in which whoever writes in several steps comes to an end.
constexpr double patience = 0.05;

QString name(const fs::path& path)
{
    return QFile::decodeName(path.c_str());
}

/// The folder, or the nearest one above it while it doesn't exist.
fs::path nearest(fs::path folder)
{
    std::error_code ignored;
    while (!fs::is_directory(folder, ignored) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder;
}

}

class FileWatch::Watcher {
public:
    Watcher(fs::path file, std::function<void()> look)
        : file_(std::move(file))
        , look_(std::move(look))
    {
        const auto soon = [this] { lookSoon(); };
        QObject::connect(&system_, &QFileSystemWatcher::fileChanged, &system_, soon);
        QObject::connect(&system_, &QFileSystemWatcher::directoryChanged, &system_, soon);
        arm();
    }

    ~Watcher()
    {
        if (pending_)
            RunLoop::main().cancel(*pending_);
    }

    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

private:
    /// The file, which may be another than before, and its folder or what is left of its path.
    void arm()
    {
        if (const QStringList old = system_.files() + system_.directories(); !old.isEmpty())
            system_.removePaths(old);
        const fs::path folder = file_.parent_path();
        fs::path watched;
        // The folder may come between a look for it and the watch on the one above.
        while (watched != nearest(folder)) {
            watched = nearest(folder);
            system_.addPath(name(watched));
        }
        if (std::error_code ignored; fs::exists(file_, ignored))
            system_.addPath(name(file_));
    }

    void lookSoon()
    {
        if (pending_)
            return;
        pending_ = RunLoop::main().schedule(patience, [this] {
            pending_.reset();
            arm();
            look_();
        });
    }

    fs::path file_;
    std::function<void()> look_;
    QFileSystemWatcher system_;
    std::optional<RunLoop::Handle> pending_;
};

FileWatch::FileWatch(std::string file, std::function<void()> look)
    : watcher_(std::make_unique<Watcher>(std::move(file), std::move(look)))
{
}

FileWatch::~FileWatch() = default;
