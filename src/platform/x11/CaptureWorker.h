#pragma once

#include "host/Capture.h"
#include "x11/Geometry.h"

#include <xcb/xcb.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace x11 {

/// A window to be captured.
struct CaptureJob {
    /// The child of the root that holds the window, and how far its sides, border included, lie outside of what is to
    /// be seen.
    xcb_window_t frame = XCB_WINDOW_NONE;
    Insets margins;
    /// Of the picture, in pixels.
    int width = 0;
    int height = 0;
    /// Called on the main run loop.
    std::function<void(host::Captured)> done;
};

/// Captures windows on a thread and a connection of its own, so that nobody waits for the server. Both are there from
/// the first job on; a connection that was lost is opened again for the next.
class CaptureWorker {
public:
    CaptureWorker() = default;
    ~CaptureWorker();
    CaptureWorker(const CaptureWorker&) = delete;
    CaptureWorker& operator=(const CaptureWorker&) = delete;

    void add(CaptureJob job);

private:
    void work();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<CaptureJob> jobs_;
    bool isEnding_ = false;
    std::thread thread_;
};

}
