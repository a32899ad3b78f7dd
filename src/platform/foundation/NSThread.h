#pragma once

namespace NSThread {

/// Returns after so many seconds. On the main thread the program goes on meanwhile: what it reads afterwards is the
/// state of then. Any thread.
void sleepForTimeInterval(double seconds);

}
