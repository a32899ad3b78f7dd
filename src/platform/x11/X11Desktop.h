#pragma once

#include "host/Desktop.h"

#include <memory>
#include <string>

namespace x11 {

/// The user's X11 desktop, on the server that DISPLAY names. Null, with `reason` set, when no server can be reached.
/// The toolkit must run on the main thread by the time the run loop first turns.
std::unique_ptr<host::Desktop> openX11Desktop(std::string& reason);

}
