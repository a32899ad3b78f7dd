#include "system/SpaceScanner.h"

#include "log/Log.h"
#include "system/Dictionaries.h"
#include "system/ListedWindow.h"
#include "system/RegularProcesses.h"
#include "windowserver/CGWindow.h"

#include <unordered_map>

namespace {

using WindowsBySpace = std::unordered_map<std::uint64_t, std::vector<SpaceWindow>>;

CGSConnectionID connection()
{
    static const CGSConnectionID cid = CGSMainConnectionID();
    return cid;
}

template <class Integer>
std::optional<Integer> number(const Value& dictionary, std::string_view key)
{
    const Value* value = dictionary.find(key);
    return value ? value->integer<Integer>() : std::nullopt;
}

WindowsBySpace windowsBySpace()
{
    WindowsBySpace windows;
    RegularProcesses regular;
    const auto list = CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0);
    for (const Value& entry : dictionaries(list)) {
        const auto window = ListedWindow::read(entry);
        if (!window || window->layer != 0 || !regular.contains(window->pid))
            continue;
        for (const std::uint64_t space : SpaceScanner::spaceIDsForWindow(window->number))
            windows[space].push_back({ window->number, window->pid });
    }
    return windows;
}

std::optional<Space> readSpace(const Value& entry)
{
    const auto id64 = number<std::uint64_t>(entry, "id64");
    if (!id64)
        return std::nullopt;

    Space space;
    space.id64 = *id64;
    space.type = number<std::int64_t>(entry, "type").value_or(-1);
    space.ownerPID = number<pid_t>(entry, "pid");
    return space;
}

}

namespace SpaceScanner {

std::uint64_t activeSpaceID()
{
    return CGSGetActiveSpace(connection());
}

std::map<std::string, std::uint64_t, std::less<>> activeSpacesByDisplay()
{
    std::map<std::string, std::uint64_t, std::less<>> spaces;
    const auto list = CGSCopyManagedDisplaySpaces(connection());
    for (const Value& display : dictionaries(list)) {
        const Value* identifier = display.find("Display Identifier");
        const Value* current = display.find("Current Space");
        const auto id64 = current ? number<std::uint64_t>(*current, "id64") : std::nullopt;
        if (identifier && identifier->string() && id64)
            spaces.insert_or_assign(*identifier->string(), *id64);
    }
    return spaces;
}

std::uint64_t activeSpaceIDForDisplay(const std::optional<std::string>& cgsIdentifier)
{
    if (!cgsIdentifier)
        return activeSpaceID();
    const auto spaces = activeSpacesByDisplay();
    const auto space = spaces.find(*cgsIdentifier);
    return space == spaces.end() ? activeSpaceID() : space->second;
}

std::vector<std::uint64_t> spaceIDsForWindow(std::uint32_t window)
{
    const auto spaces = CGSCopySpacesForWindows(connection(), kCGSAllSpacesMask, Value::Array { window });
    const Value::Array* array = spaces ? spaces->array() : nullptr;
    if (!array)
        return {};

    std::vector<std::uint64_t> ids;
    ids.reserve(array->size());
    for (const Value& space : *array) {
        const auto id = space.integer<std::uint64_t>();
        if (!id)
            return {};
        ids.push_back(*id);
    }
    return ids;
}

std::vector<Space> scan()
{
    const std::uint64_t active = activeSpaceID();
    const auto list = CGSCopyManagedDisplaySpaces(connection());
    const Value::Array& displays = dictionaries(list);
    if (displays.empty()) {
        Log::debug("CGSCopyManagedDisplaySpaces returned nothing");
        return {};
    }

    WindowsBySpace windows = windowsBySpace();
    std::vector<Space> spaces;
    const Value* entries = displays.front().find("Spaces");
    for (const Value& entry : dictionaries(entries ? std::optional(*entries) : std::nullopt)) {
        auto space = readSpace(entry);
        if (!space)
            continue;
        space->windows = windows[space->id64];
        space->isActive = space->id64 == active;
        spaces.push_back(std::move(*space));
    }
    Log::debug("scan: ", spaces.size(), " spaces, active=", active);
    return spaces;
}

}
