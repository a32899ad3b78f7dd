#include "x11/WindowList.h"

#include <algorithm>

namespace x11 {
namespace {

/// 0 is no space, so the first desktop is 1.
std::uint64_t spaceOf(std::uint32_t desktop)
{
    return std::uint64_t(desktop) + 1;
}

std::uint32_t spaceCount(const DesktopState& state)
{
    return std::max(1U, state.desktopCount);
}

Value describe(const DesktopState& state, const WindowRecord& window, const host::Process* owner, bool isOnScreen)
{
    Value::Dictionary entry {
        { "kCGWindowNumber", window.id },
        { "kCGWindowOwnerPID", window.pid },
        { "kCGWindowLayer", window.facts.layer() },
        { "kCGWindowBounds", CGRectCreateDictionaryRepresentation(windowSpace(state.outer(window), state.primary)) },
        { "kCGWindowName", window.title() },
        { "kCGWindowAlpha", 1.0 },
        { "kCGWindowIsOnscreen", isOnScreen },
    };
    if (owner && owner->localizedName)
        entry.set("kCGWindowOwnerName", *owner->localizedName);
    return entry;
}

}

const Value& WindowList::entry(const WindowRecord& window, bool isOnScreen)
{
    const auto owner = processes_.find(window.pid);
    const auto known = entries_.find(window.id);
    const bool isCurrent = known != entries_.end() && known->second.revision == window.revision
        && known->second.isOnScreen == isOnScreen && known->second.owner == owner;
    if (isCurrent)
        return known->second.value;
    Entry made { window.revision, isOnScreen, owner, describe(mirror_.state(), window, owner.get(), isOnScreen) };
    return entries_.insert_or_assign(window.id, std::move(made)).first->second.value;
}

std::optional<Value> WindowList::list(bool onScreenOnly)
{
    const DesktopState& state = mirror_.state();
    Value::Array result;
    for (const WindowRecord* window : state.frontToBack()) {
        const bool isOnScreen = !state.isIconic(*window) && state.isOnCurrentDesktop(*window);
        if (!onScreenOnly || (isOnScreen && window->facts.kind() != WindowKind::desktop))
            result.push_back(entry(*window, isOnScreen));
    }
    if (entries_.size() > 2 * state.windows.size())
        std::erase_if(entries_, [&](const auto& each) { return !state.windows.contains(each.first); });
    return result;
}

std::uint64_t WindowList::activeSpace()
{
    return spaceOf(mirror_.state().currentDesktop);
}

std::optional<Value> WindowList::displaySpaces()
{
    const DesktopState& state = mirror_.state();
    Value::Array spaces;
    for (std::uint32_t desktop = 0; desktop < spaceCount(state); ++desktop)
        spaces.push_back(Value::Dictionary { { "id64", spaceOf(desktop) }, { "type", 0 } });
    const Value::Dictionary current { { "id64", activeSpace() }, { "type", 0 } };

    Value::Array displays;
    for (const host::Display& display : monitors_.all())
        displays.push_back(Value::Dictionary {
            { "Display Identifier", display.uuid.value_or("") }, { "Current Space", current }, { "Spaces", spaces } });
    return displays;
}

std::optional<Value> WindowList::spaces(std::uint32_t window)
{
    const DesktopState& state = mirror_.state();
    const WindowRecord* record = state.find(window);
    if (!record)
        return std::nullopt;
    const std::uint32_t desktop = state.desktopOf(*record);
    if (desktop != allDesktops)
        return Value::Array { spaceOf(desktop) };
    Value::Array all;
    for (std::uint32_t each = 0; each < spaceCount(state); ++each)
        all.emplace_back(spaceOf(each));
    return all;
}

}
