#include "x11/CaptureWorker.h"

#include "base/IconSource.h"
#include "base/RunLoop.h"
#include "x11/WindowPixels.h"

#include <pthread.h>

#include <algorithm>
#include <utility>

namespace x11 {
namespace {

/// The connection with what was learned over it.
struct Server {
    std::unique_ptr<Connection> connection;
    WindowPixels pixels;

    explicit Server(std::unique_ptr<Connection> opened)
        : connection(std::move(opened))
        , pixels(*connection)
    {
    }
};

void connect(std::unique_ptr<Server>& server, std::string& reason)
{
    if (server && !server->connection->isLost())
        return;
    server.reset();
    if (auto connection = Connection::open(reason))
        server = std::make_unique<Server>(std::move(connection));
}

host::Captured outcome(PixelsResult result)
{
    if (!result.error.empty())
        return { nullptr, std::move(result.error) };
    auto picture = IconSource::pack(result.argb.data(), result.width, result.height);
    return { picture, picture ? "" : "the picture can't be packed" };
}

}

CaptureWorker::~CaptureWorker()
{
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

void CaptureWorker::add(CaptureJob job)
{
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    if (!thread_.joinable()) {
        thread_ = std::thread([this] { work(); });
        pthread_setname_np(thread_.native_handle(), "capture");
    }
    changed_.notify_one();
}

/// What has come in the meantime is done together: windows that must be drawn first are then all waited for at once.
void CaptureWorker::work()
{
    std::unique_ptr<Server> server;
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        if (jobs_.empty()) {
            changed_.wait(lock);
            continue;
        }
        auto jobs = std::exchange(jobs_, {});
        lock.unlock();

        std::string reason;
        connect(server, reason);
        if (server)
            server->pixels.prepare(jobs);
        for (CaptureJob& job : jobs) {
            auto captured = server ? outcome(server->pixels.read(job)) : host::Captured { nullptr, reason };
            RunLoop::main().perform(
                [done = std::move(job.done), captured = std::move(captured)]() mutable { done(std::move(captured)); });
        }
        if (server)
            server->pixels.finish();
        lock.lock();
    }
}

}
