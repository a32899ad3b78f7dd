#include "embedded/Windows.h"

#include "embedded/CallLog.h"
#include "embedded/World.h"

namespace embedded {

namespace {

host::DisplaySpaces spacesOf(const Screen& screen)
{
    host::DisplaySpaces display { screen.uuid, screen.currentSpace, {} };
    for (const Scenario::Space& space : screen.spaces)
        display.spaces.push_back({ space.id, space.type == Scenario::Space::fullScreen, space.pid });
    return display;
}

}

Windows::List Windows::all()
{
    log_.add({ .name = "windowList", .value = {} });
    List list;
    for (const Window* window : world_.byAppearance())
        list.push_back(record(*window));
    if (records_.size() > 2 * list.size())
        std::erase_if(records_, [&](const auto& each) { return !world_.window(each.first); });
    return list;
}

Windows::List Windows::onScreen()
{
    log_.add({ .name = "windowList", .value = {} });
    List list;
    for (const Window* window : world_.stack())
        if (world_.isOnScreen(*window) && !window->isPartOfDesktop())
            list.push_back(record(*window));
    return list;
}

std::shared_ptr<const host::Window> Windows::find(std::uint32_t number)
{
    log_.add({ .window = number, .name = "window", .value = {} });
    const Window* window = world_.window(number);
    return window ? record(*window) : nullptr;
}

std::shared_ptr<const host::Window> Windows::record(const Window& window)
{
    const bool isOnScreen = world_.isOnScreen(window);
    const bool tellsTitle = world_.isScreenCapturePermitted();
    auto& known = records_[window.number];
    const bool isCurrent = known && known->owner == window.owner && known->layer == window.layer
        && known->bounds == window.bounds && known->spaces == window.spaces && known->isOnScreen == isOnScreen
        && known->demandsAttention == window.demandsAttention
        && (tellsTitle ? known->title == window.title : !known->title);
    if (!isCurrent)
        known = std::make_shared<const host::Window>(
            host::Window { window.number, window.owner, tellsTitle ? window.title : std::nullopt, window.layer,
                window.bounds, window.spaces, isOnScreen, window.demandsAttention });
    return known;
}

std::optional<std::uint64_t> Windows::activeSpace()
{
    return world_.activeSpace();
}

std::vector<host::DisplaySpaces> Windows::displaySpaces()
{
    std::vector<host::DisplaySpaces> displays;
    for (const Screen& screen : world_.screens().all())
        displays.push_back(spacesOf(screen));
    return displays;
}

}
