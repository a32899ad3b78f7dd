#include "controls/Trash.h"

#include "appkit/NSWorkspace.h"
#include "foundation/NSFileManager.h"
#include "log/Log.h"

#include <algorithm>

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

bool throwAway(const std::vector<NSURL>& files)
{
    const auto gone = std::ranges::count_if(
        files, [](const NSURL& file) { return NSFileManager::defaultManager().trashItemAtURL(file); });
    Log::debug("trash: threw away ", gone, " of ", files.size(), " files");
    return gone > 0;
}

void open()
{
    Log::debug("trash: opening");
    NSWorkspace::sharedWorkspace().openURL(NSURL::fileURLWithPath(folder()));
}

}
