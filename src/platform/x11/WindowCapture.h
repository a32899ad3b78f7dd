#pragma once

#include "host/Capture.h"
#include "x11/CaptureWorker.h"
#include "x11/WindowMirror.h"

namespace x11 {

/// Every client of an X server may look at every window that is mapped. Main thread.
class WindowCapture final : public host::Capture {
public:
    explicit WindowCapture(const WindowMirror& mirror)
        : mirror_(mirror)
    {
    }

    bool isSupported() override { return true; }
    bool isPermitted() override { return true; }
    bool requestPermission() override { return true; }
    void capture(std::uint32_t window, int width, int height, std::function<void(host::Captured)> done) override;

private:
    const WindowMirror& mirror_;
    /// Goes with us, and with it the answers that are still to come.
    std::shared_ptr<char> alive_ = std::make_shared<char>();
    CaptureWorker worker_;
};

}
