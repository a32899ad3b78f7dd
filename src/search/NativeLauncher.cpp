#include "search/NativeLauncher.h"

#include "log/Log.h"
#include "windowserver/CGEvent.h"

namespace {

constexpr CGKeyCode spaceBar = 49;

}

void NativeLauncher::openSpotlight()
{
    const auto source = CGEventSourceCreate(kCGEventSourceStateCombinedSessionState);
    const CGEventRef down = CGEventCreateKeyboardEvent(source, spaceBar, true);
    const CGEventRef up = CGEventCreateKeyboardEvent(source, spaceBar, false);
    if (!down || !up) {
        Log::debug("launcher: could not create key events");
        return;
    }
    CGEventSetFlags(down, kCGEventFlagMaskCommand);
    CGEventSetFlags(up, kCGEventFlagMaskCommand);
    CGEventPost(kCGHIDEventTap, down);
    CGEventPost(kCGHIDEventTap, up);
    Log::debug("launcher: sent Cmd+Space");
}
