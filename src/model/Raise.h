#pragma once

#include "foundation/NSURL.h"

#include <sys/types.h>

#include <optional>
#include <string>

/// Brings a window of an activated application forward, on a queue of its own: up to 8 attempts, 0.15 seconds apart,
/// and when none succeeds the application is opened anew. Called on the main thread.
namespace Raise {

struct Target {
    pid_t pid = 0;
    std::string name;
    /// Without it the attempts end in nothing.
    std::optional<NSURL> bundleURL;
};

/// Several of them at a time run interleaved.
void start(Target target);

/// The moment from which the time to the raised window is measured, of whichever attempt succeeds next.
void noteClick();

}
