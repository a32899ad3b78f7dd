#pragma once

#include "host/Capture.h"

namespace x11 {

/// Every client of an X server may look at every window.
class ScreenRight final : public host::Capture {
public:
    bool isPermitted() override { return true; }
    bool requestPermission() override { return true; }
};

}
