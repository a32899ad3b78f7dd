#pragma once

#include <xcb/xcb.h>

namespace x11 {

/// The toolkit's connection to the server, on which its windows were made; null on a platform of the toolkit that isn't
/// X11. What must come before or after the toolkit's own requests goes here.
xcb_connection_t* toolkitConnection();

}
