#pragma once

#include <xcb/xcb.h>

namespace x11 {

/// The toolkit's connection to the server, on which its windows were made; null on a platform of the toolkit that isn't
/// X11. What must come before or after the toolkit's own requests goes here.
xcb_connection_t* toolkitConnection();

/// Has the server tell the toolkit no more of the root's properties. It would follow the work area by them, which
/// nobody here asks it for; and each window that comes, goes or gets the focus changes some, which wake two threads of
/// it.
void quietenToolkit(xcb_window_t root);

}
