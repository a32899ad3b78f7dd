#pragma once

namespace host {

/// The right to look at other programs' windows. Main thread.
class Capture {
public:
    virtual ~Capture() = default;

    virtual bool isPermitted() = 0;
    /// Asks the user where it isn't; true when it is held afterwards.
    virtual bool requestPermission() = 0;
};

}
