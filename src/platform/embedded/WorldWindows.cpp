#include "embedded/World.h"

#include <algorithm>
#include <utility>

namespace embedded {

std::uint32_t World::open(Scenario::Window described)
{
    Window window;
    window.number = described.number ? described.number : newNumber();
    window.appearance = ++lastAppearance_;
    window.owner = described.owner;
    window.title = std::move(described.title);
    window.layer = described.layer;
    window.bounds = described.bounds;
    window.isMinimised = described.isMinimised;
    window.isAccessible = described.isAccessible;
    window.demandsAttention = described.demandsAttention;
    window.elements = described.elements;
    window.faults = std::move(described.faults);
    if (!screens_.all().empty())
        window.spaces = { screens_.all()[screens_.containing(window.bounds)].currentSpace };
    if (described.spaces)
        window.spaces = *std::move(described.spaces);

    const std::uint32_t number = window.number;
    windows_.insert(windows_.begin(), std::move(window));
    if (described.isFullScreen)
        setFullScreen(number, true);
    notices_.windowsChanged();
    notices_.sceneChanged();
    return number;
}

void World::close(std::uint32_t number)
{
    Window* closing = find(number);
    if (!closing)
        return;
    if (closing->isFullScreen())
        leaveFullScreen(*closing);
    if (RunningProcess* owner = find(closing->owner); owner && owner->mainWindow == number)
        owner->mainWindow.reset();
    std::erase_if(windows_, [&](const Window& window) { return window.number == number; });
    notices_.windowsChanged();
    notices_.sceneChanged();
}

void World::closeAll(pid_t owner)
{
    std::vector<std::uint32_t> numbers;
    for (const Window* window : windowsOf(owner))
        numbers.push_back(window->number);
    for (const std::uint32_t number : numbers)
        close(number);
}

void World::focus(std::uint32_t number)
{
    const Window* window = this->window(number);
    if (!window)
        return;
    const pid_t owner = window->owner;
    setMinimised(number, false);
    raise(number);
    activate(owner);
    raise(number);
}

void World::raise(std::uint32_t number)
{
    if (!window(number))
        return;
    moveToFront(number);
    const Window& raised = *window(number);
    if (raised.isMinimised)
        return;
    setMain(number);
    if (frontmost_ == raised.owner && !showsSomewhere(raised) && !raised.spaces.empty())
        showSpace(raised.spaces.front());
}

void World::setMain(std::uint32_t number)
{
    const Window* main = window(number);
    RunningProcess* owner = main ? find(main->owner) : nullptr;
    if (!owner)
        return;
    if (std::exchange(owner->mainWindow, number) != number && frontmost_ == owner->pid())
        notices_.windowsChanged();
    noteLook();
    notices_.sceneChanged();
}

void World::setTitle(std::uint32_t number, std::optional<std::string> title)
{
    if (Window* window = find(number))
        window->title = std::move(title);
    notices_.sceneChanged();
}

void World::setBounds(std::uint32_t number, const CGRect& bounds)
{
    Window* window = find(number);
    if (!window || window->isFullScreen())
        return;
    const CGSize size = granted(*window, bounds.size());
    window->bounds = { bounds.x, bounds.y, size.width, size.height };
    followScreen(*window);
    notices_.sceneChanged();
}

void World::setMinimised(std::uint32_t number, bool minimised)
{
    Window* window = find(number);
    if (!window || window->isMinimised == minimised)
        return;
    window->isMinimised = minimised;
    notices_.sceneChanged();
    if (!minimised) {
        raise(number);
        return;
    }
    if (RunningProcess* owner = find(window->owner); owner && owner->mainWindow == number) {
        owner->mainWindow.reset();
        notices_.windowsChanged();
    }
}

void World::setFullScreen(std::uint32_t number, bool fullScreen)
{
    Window* window = find(number);
    if (!window || screens_.all().empty() || window->isFullScreen() == fullScreen)
        return;
    if (fullScreen)
        enterFullScreen(*window);
    else
        leaveFullScreen(*window);
    notices_.windowsChanged();
    notices_.sceneChanged();
}

void World::requestFullScreen(std::uint32_t number, bool fullScreen)
{
    if (faults_.fullScreenDelay > 0)
        later_.after(faults_.fullScreenDelay, [this, number, fullScreen] { setFullScreen(number, fullScreen); });
    else
        setFullScreen(number, fullScreen);
}

void World::setSpaces(std::uint32_t number, std::vector<std::uint64_t> spaces)
{
    Window* window = find(number);
    if (!window)
        return;
    window->spaces = std::move(spaces);
    notices_.windowsChanged();
    notices_.sceneChanged();
}

void World::setLayer(std::uint32_t number, int layer)
{
    if (Window* window = find(number))
        window->layer = layer;
    notices_.sceneChanged();
}

void World::type(std::uint32_t number, const std::string& text)
{
    if (Window* window = find(number))
        window->typed += text;
    notices_.sceneChanged();
}

void World::demandAttention(std::uint32_t number)
{
    Window* window = find(number);
    if (!window || (frontmost_ && focusedWindow(*frontmost_) == window))
        return;
    window->demandsAttention = true;
    notices_.windowsChanged();
}

/// The user has the focused window before them.
void World::noteLook()
{
    const Window* focused = frontmost_ ? focusedWindow(*frontmost_) : nullptr;
    if (!focused || !focused->demandsAttention)
        return;
    find(focused->number)->demandsAttention = false;
    notices_.windowsChanged();
}

void World::moveToFront(std::uint32_t number)
{
    std::stable_partition(
        windows_.begin(), windows_.end(), [&](const Window& window) { return window.number == number; });
    notices_.sceneChanged();
}

CGSize World::granted(const Window& window, CGSize size) const
{
    if (window.faults.refusesSizes)
        return window.bounds.size();
    const CGSize least = window.faults.minimumSize.value_or(CGSize {});
    return { std::max(size.width, least.width), std::max(size.height, least.height) };
}

/// A window that is moved to another screen goes to the space that shows there.
void World::followScreen(Window& window)
{
    if (window.spaces.size() != 1 || screens_.all().empty())
        return;
    const std::size_t index = screens_.containing(window.bounds);
    if (screens_.withSpace(window.spaces.front()) == index)
        return;
    window.spaces = { screens_.all()[index].currentSpace };
    notices_.windowsChanged();
}

void World::enterFullScreen(Window& window)
{
    const std::uint64_t lies = window.spaces.empty() ? 0 : window.spaces.front();
    const std::size_t index = screens_.withSpace(lies).value_or(screens_.containing(window.bounds));
    window.beforeFullScreen = Window::Place { window.bounds, window.spaces };
    window.bounds = screens_.flipped(screens_.all()[index].frame);
    if (!screens_.isFullScreen(lies)) {
        window.spaces = { screens_.addFullScreen(index, window.owner) };
        screens_.show(window.spaces.front());
    }
    moveToFront(window.number);
}

void World::leaveFullScreen(Window& window)
{
    const std::uint64_t own = window.spaces.front();
    const auto [bounds, spaces] = *window.beforeFullScreen;
    window.beforeFullScreen.reset();
    window.bounds = bounds;
    screens_.removeSpace(own, spaces.empty() ? 0 : spaces.front());
    window.spaces = spaces;
    if (window.spaces == std::vector { own })
        window.spaces = { screens_.all()[screens_.containing(bounds)].currentSpace };
}

}
