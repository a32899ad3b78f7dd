#include "windowserver/CGWindow.h"

#include "base/Carried.h"
#include "base/PerDesktop.h"
#include "host/Capture.h"
#include "host/Desktop.h"
#include "host/Displays.h"
#include "host/Processes.h"
#include "host/Windows.h"
#include "windowserver/Damage.h"

#include <array>

namespace {

/// The one space of a desktop that has none.
constexpr std::uint64_t onlySpace = 1;

host::Windows& windows()
{
    return host::Desktop::current().windows();
}

/// A window of which nobody knows where it is counts as one that fills the primary display.
CGRect boundsOf(const host::Window& window)
{
    if (window.bounds)
        return *window.bounds;
    const auto& displays = host::Desktop::current().displays().all();
    return displays.empty() ? CGRect {} : CGRect { 0, 0, displays.front().frame.width, displays.front().frame.height };
}

Value dictionaryOf(const host::Window& window, const host::Process* owner)
{
    Value::Dictionary entry {
        { kCGWindowNumber, window.number },
        { kCGWindowOwnerPID, window.owner },
        { kCGWindowLayer, window.layer },
        { kCGWindowBounds, CGRectCreateDictionaryRepresentation(boundsOf(window)) },
        { kCGWindowAlpha, 1.0 },
    };
    if (window.title)
        entry.set(kCGWindowName, *window.title);
    if (window.demandsAttention)
        entry.set(kCGWindowDemandsAttention, true);
    if (owner && owner->localizedName)
        entry.set(kCGWindowOwnerName, *owner->localizedName);
    return entry;
}

/// The dictionaries of a list of windows, each made again only when what it tells has changed.
class WindowDictionaries {
public:
    const Value& of(host::Windows::List list)
    {
        const auto& running = host::Desktop::current().processes().running();
        const bool areOwnersSame = running == running_;
        if (list == windows_ && areOwnersSame)
            return value_;
        windows_ = std::move(list);
        running_ = running;

        Value::Array entries;
        entries.reserve(windows_.size());
        carried_.begin();
        for (const auto& window : windows_) {
            const auto [entry, isKnown] = carried_.next(window.get());
            if (!isKnown || !areOwnersSame)
                describe(entry, window);
            entries.push_back(entry.value);
        }
        carried_.end();
        value_ = std::move(entries);
        return value_;
    }

private:
    struct Entry {
        std::shared_ptr<const host::Window> window {};
        std::shared_ptr<const host::Process> owner {};
        Value value = false;
    };

    static void describe(Entry& entry, const std::shared_ptr<const host::Window>& window)
    {
        const auto owner = host::Desktop::current().processes().find(window->owner);
        if (entry.window != window || entry.owner != owner)
            entry = { window, owner, dictionaryOf(*window, owner.get()) };
    }

    host::Windows::List windows_;
    std::vector<std::shared_ptr<const host::Process>> running_;
    Value value_ = Value::Array {};
    Carried<const host::Window*, Entry> carried_;
};

Value dictionaryOf(const host::Space& space)
{
    constexpr int desktop = 0;
    constexpr int fullScreen = 4;
    Value::Dictionary entry { { "id64", space.id }, { "type", space.isFullScreen ? fullScreen : desktop } };
    if (space.owner)
        entry.set("pid", *space.owner);
    return entry;
}

Value dictionaryOf(const host::DisplaySpaces& display)
{
    Value::Array spaces;
    Value::Dictionary entry;
    for (const host::Space& space : display.spaces) {
        spaces.push_back(dictionaryOf(space));
        if (space.id == display.current)
            entry.set("Current Space", spaces.back());
    }
    entry.set("Spaces", std::move(spaces));
    if (display.uuid)
        entry.set("Display Identifier", *display.uuid);
    return entry;
}

}

WindowServerDamage& windowServerDamage()
{
    return perDesktop<WindowServerDamage>();
}

/// There is one window server, so any number names the connection to it.
CGSConnectionID CGSMainConnectionID()
{
    return 1;
}

std::uint64_t CGSGetActiveSpace(CGSConnectionID)
{
    return windows().activeSpace().value_or(onlySpace);
}

std::optional<std::uint64_t> CGSGetChangeCount(CGSConnectionID)
{
    return windows().changeCount();
}

std::optional<Value> CGSCopyManagedDisplaySpaces(CGSConnectionID)
{
    if (windowServerDamage().displaySpacesMissing)
        return std::nullopt;
    Value::Array displays;
    for (const host::DisplaySpaces& display : windows().displaySpaces())
        displays.push_back(dictionaryOf(display));
    return displays;
}

std::optional<Value> CGSCopySpacesForWindows(CGSConnectionID, unsigned, const Value& numbers)
{
    const Value::Array* array = numbers.array();
    const auto number = array && array->size() == 1 ? array->front().integer<std::uint32_t>() : std::nullopt;
    const auto window = number ? windows().find(*number) : nullptr;
    if (!window)
        return std::nullopt;
    if (!window->spaces)
        return Value::Array { onlySpace };
    return Value::Array(window->spaces->begin(), window->spaces->end());
}

std::optional<Value> CGWindowListCopyWindowInfo(unsigned option, std::uint32_t)
{
    if (windowServerDamage().listMissing)
        return std::nullopt;
    auto& dictionaries = perDesktop<std::array<WindowDictionaries, 2>>();
    const bool onScreenOnly = (option & kCGWindowListOptionOnScreenOnly) != 0;
    const Value& list = dictionaries[onScreenOnly].of(onScreenOnly ? windows().onScreen() : windows().all());
    if (windowServerDamage().listEntries.empty())
        return list;
    Value::Array damaged = windowServerDamage().listEntries;
    damaged.insert(damaged.end(), list.array()->begin(), list.array()->end());
    return damaged;
}

bool CGPreflightScreenCaptureAccess()
{
    return host::Desktop::current().capture().isPermitted();
}

bool CGRequestScreenCaptureAccess()
{
    return host::Desktop::current().capture().requestPermission();
}
