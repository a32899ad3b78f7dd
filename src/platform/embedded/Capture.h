#pragma once

#include "embedded/CallLog.h"
#include "embedded/Later.h"
#include "embedded/World.h"
#include "host/Capture.h"

namespace embedded {

/// Pictures of the windows as the view paints them; minimised windows and those on other spaces have theirs too. Main
/// thread, captures included: there is no server whose answers could be waited for elsewhere.
class Capture final : public host::Capture {
public:
    Capture(World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    bool isSupported() override { return true; }
    bool isPermitted() override { return world_.isScreenCapturePermitted(); }
    bool requestPermission() override
    {
        log_.add({ .name = "requestScreenCapture", .value = {} });
        return world_.isScreenCapturePermitted();
    }
    void capture(std::uint32_t window, int width, int height, std::function<void(host::Captured)> done) override;

private:
    host::Captured take(std::uint32_t window, int width, int height);

    World& world_;
    CallLog& log_;
    Later later_;
};

}
