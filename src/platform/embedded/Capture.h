#pragma once

#include "embedded/CallLog.h"
#include "embedded/World.h"
#include "host/Capture.h"

namespace embedded {

/// The right to look at other programs' windows. Main thread.
class Capture final : public host::Capture {
public:
    Capture(const World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    bool isPermitted() override { return world_.isScreenCapturePermitted(); }
    bool requestPermission() override
    {
        log_.add({ .name = "requestScreenCapture", .value = {} });
        return world_.isScreenCapturePermitted();
    }

private:
    const World& world_;
    CallLog& log_;
};

}
