#include "controls/Trash.h"

#include "appkit/NSWorkspace.h"
#include "foundation/NSFileManager.h"
#include "log/Log.h"

namespace {

std::string folder()
{
    return NSHomeDirectory() + "/.Trash";
}

}

namespace Trash {

bool isEmpty()
{
    constexpr bool skipsHiddenFiles = true;
    return !NSFileManager::defaultManager().hasContents(folder(), skipsHiddenFiles);
}

void open()
{
    Log::debug("trash: opening");
    NSWorkspace::sharedWorkspace().openURL(NSURL::fileURLWithPath(folder()));
}

}
