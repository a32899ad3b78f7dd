#pragma once

#include "freedesktop/LaunchNotifier.h"

namespace x11 {

/// What a launcher tells the window manager of a program that it starts: that its first window is awaited, and that the
/// user asked for it just now, so that it may come to the front. Each message goes over a connection of its own: it
/// needs the server's present time, and starting a program is rare.
freedesktop::LaunchNotifier& startupNotice();

}
