#include "dock/DirtyFlag.h"

#include "dock/SupportFolders.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSISO8601DateFormatter.h"
#include "foundation/NSProcessInfo.h"
#include "log/Log.h"

#include <charconv>
#include <string>
#include <string_view>

namespace {

std::string flagFile()
{
    return DockRepair::supportDirectory() + "/dock-dirty.flag";
}

std::optional<pid_t> numberIn(std::string_view line)
{
    pid_t number = 0;
    const auto [end, error] = std::from_chars(line.begin(), line.end(), number);
    return error == std::errc() && end == line.end() ? std::optional(number) : std::nullopt;
}

}

bool DockRepair::isDirty()
{
    return NSFileManager::defaultManager().fileExists(flagFile());
}

void DockRepair::markDirty()
{
    if (isDirty())
        return;
    const std::string text = std::to_string(NSProcessInfo::processIdentifier()) + '\n'
        + NSISO8601DateFormatter::stringFromDate(NSDate::now()) + '\n';
    NSFileManager::defaultManager().writeAtomically(text, flagFile());
    Log::debug("repair: dock marked dirty");
}

void DockRepair::clearDirty()
{
    if (!isDirty())
        return;
    NSFileManager::defaultManager().removeItem(flagFile());
    Log::debug("repair: dirty flag cleared");
}

std::optional<DockRepair::DirtyFlag> DockRepair::readFlag()
{
    const auto text = NSFileManager::defaultManager().contentsOfFile(flagFile());
    return text ? std::optional(parseFlag(*text)) : std::nullopt;
}

DockRepair::DirtyFlag DockRepair::parseFlag(std::string text)
{
    std::string_view rest = text;
    rest.remove_prefix(std::min(rest.find_first_not_of('\n'), rest.size()));
    const auto holder = numberIn(rest.substr(0, rest.find('\n')));
    return { holder, std::move(text) };
}

void DockRepair::raiseAgain(const DirtyFlag& flag)
{
    NSFileManager::defaultManager().writeAtomically(flag.text, flagFile());
}
