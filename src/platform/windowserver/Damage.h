#pragma once

#include "base/Value.h"

/// What a test has the window server answer in place of the truth, as a real one now and then does.
struct WindowServerDamage {
    bool listMissing = false;
    /// Put in front of the window list as they are: entries of a wrong type, or without what an entry must have.
    Value::Array listEntries;
    bool displaySpacesMissing = false;
};

/// Main thread.
WindowServerDamage& windowServerDamage();
