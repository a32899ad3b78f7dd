#include "embedded/Windows.h"

#include "embedded/CallLog.h"
#include "embedded/World.h"

namespace embedded {

namespace {

Value spaceEntry(const Scenario::Space& space)
{
    Value::Dictionary entry { { "id64", space.id }, { "type", space.type } };
    if (space.pid)
        entry.set("pid", *space.pid);
    return entry;
}

Value displayEntry(const Screen& screen)
{
    Value::Array spaces;
    Value::Dictionary entry;
    for (const auto& space : screen.spaces) {
        spaces.push_back(spaceEntry(space));
        if (space.id == screen.currentSpace)
            entry.set("Current Space", spaces.back());
    }
    entry.set("Spaces", std::move(spaces));
    if (screen.uuid)
        entry.set("Display Identifier", *screen.uuid);
    return entry;
}

}

std::optional<Value> Windows::list(bool onScreenOnly)
{
    log_.add({ .name = "windowList", .value = {} });
    if (world_.faults().windowListMissing)
        return std::nullopt;
    Value::Array entries = world_.faults().windowListEntries;
    for (const Window* window : world_.stack()) {
        if (!onScreenOnly || (world_.isOnScreen(*window) && !window->isPartOfDesktop()))
            entries.push_back(entry(*window));
    }
    return entries;
}

Value Windows::entry(const Window& window) const
{
    Value::Dictionary entry { { "kCGWindowNumber", window.number }, { "kCGWindowOwnerPID", window.owner },
        { "kCGWindowLayer", window.layer }, { "kCGWindowBounds", CGRectCreateDictionaryRepresentation(window.bounds) },
        { "kCGWindowAlpha", 1.0 } };
    if (world_.isOnScreen(window))
        entry.set("kCGWindowIsOnscreen", true);
    if (window.title && world_.isScreenCapturePermitted())
        entry.set("kCGWindowName", *window.title);
    const RunningProcess* owner = world_.process(window.owner);
    if (owner && owner->record->localizedName)
        entry.set("kCGWindowOwnerName", *owner->record->localizedName);
    return entry;
}

std::uint64_t Windows::activeSpace()
{
    return world_.activeSpace();
}

std::optional<Value> Windows::displaySpaces()
{
    if (world_.faults().displaySpacesMissing)
        return std::nullopt;
    Value::Array displays;
    for (const Screen& screen : world_.screens().all())
        displays.push_back(displayEntry(screen));
    return displays;
}

std::optional<Value> Windows::spaces(std::uint32_t number)
{
    const Window* window = world_.window(number);
    if (!window)
        return std::nullopt;
    return Value::Array(window->spaces.begin(), window->spaces.end());
}

}
