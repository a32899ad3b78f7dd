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
    if (entries_.size() > 2 * world_.windows().size())
        std::erase_if(entries_, [&](const auto& each) { return !world_.window(each.first); });
    return entries;
}

Windows::Facts Windows::factsOf(const Window& window) const
{
    const RunningProcess* owner = world_.process(window.owner);
    return { window.owner, window.layer, window.bounds, world_.isOnScreen(window),
        world_.isScreenCapturePermitted() ? window.title : std::nullopt,
        owner ? owner->record->localizedName : std::nullopt };
}

const Value& Windows::entry(const Window& window)
{
    Facts facts = factsOf(window);
    const auto known = entries_.find(window.number);
    if (known != entries_.end() && known->second.facts == facts)
        return known->second.value;

    Value::Dictionary entry { { "kCGWindowNumber", window.number }, { "kCGWindowOwnerPID", facts.owner },
        { "kCGWindowLayer", facts.layer }, { "kCGWindowBounds", CGRectCreateDictionaryRepresentation(facts.bounds) },
        { "kCGWindowAlpha", 1.0 } };
    if (facts.isOnScreen)
        entry.set("kCGWindowIsOnscreen", true);
    if (facts.title)
        entry.set("kCGWindowName", *facts.title);
    if (facts.ownerName)
        entry.set("kCGWindowOwnerName", *facts.ownerName);
    Entry made { std::move(facts), std::move(entry) };
    return entries_.insert_or_assign(window.number, std::move(made)).first->second.value;
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
