#pragma once

namespace host {

class Desktop;

/// Opens the desktop that the command line and the environment ask for: the user's X11 desktop when DISPLAY is set, the
/// embedded one otherwise or on request. It lives as long as the process. On failure it writes the reason to standard
/// error and ends the process: status 2 for a fault in what the user gave, 1 otherwise.
Desktop& openDesktop();

}
