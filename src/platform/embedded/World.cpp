#include "embedded/World.h"

#include <algorithm>
#include <cassert>

namespace embedded {

World::World(const Scenario& scenario, const std::string& dockPreferences, Notices& notices, Icons& icons)
    : notices_(notices)
    , icons_(icons)
    , screens_(scenario.displays)
    , dock_(dockPreferences)
    , applications_(scenario.applications)
    , accessibilityPermitted_(scenario.accessibilityPermitted)
    , screenCapturePermitted_(scenario.screenCapturePermitted)
    , faults_(scenario.faults)
{
    dock_.seed(scenario.dockTiles);
    dock_.readPreferences();
    dock_.badges = scenario.badges;

    for (const auto& process : scenario.processes)
        start(process);
    startOwnPrograms();
    for (auto window = scenario.windows.rbegin(); window != scenario.windows.rend(); ++window)
        open(*window);
    // They were opened from the last to the first.
    for (Window& window : windows_)
        window.appearance = -window.appearance;
    frontmost_ = scenario.frontmost ? scenario.frontmost : nextFrontmost(0);
}

// What there is

std::vector<const Window*> World::stack() const
{
    std::vector<const Window*> stack;
    for (const Window& window : windows_)
        stack.push_back(&window);
    std::stable_sort(stack.begin(), stack.end(), [](const Window* a, const Window* b) { return a->layer > b->layer; });
    return stack;
}

std::vector<const Window*> World::byAppearance() const
{
    std::vector<const Window*> windows;
    for (const Window& window : windows_)
        windows.push_back(&window);
    std::ranges::sort(windows, {}, &Window::appearance);
    return windows;
}

const RunningProcess* World::process(pid_t pid) const
{
    const auto place = std::find_if(
        processes_.begin(), processes_.end(), [&](const RunningProcess& process) { return process.pid() == pid; });
    return place == processes_.end() ? nullptr : &*place;
}

const RunningProcess* World::processNamed(std::string_view bundleIdentifier) const
{
    const auto place = std::find_if(processes_.begin(), processes_.end(),
        [&](const RunningProcess& process) { return process.record->bundleIdentifier == bundleIdentifier; });
    return place == processes_.end() ? nullptr : &*place;
}

const Window* World::window(std::uint32_t number) const
{
    const auto place
        = std::find_if(windows_.begin(), windows_.end(), [&](const Window& window) { return window.number == number; });
    return place == windows_.end() ? nullptr : &*place;
}

const Scenario::Application* World::application(const std::string& path) const
{
    const auto place = std::find_if(
        applications_.begin(), applications_.end(), [&](const auto& application) { return application.path == path; });
    return place == applications_.end() ? nullptr : &*place;
}

std::vector<const Window*> World::windowsOf(pid_t pid) const
{
    auto own = stack();
    std::erase_if(own, [&](const Window* window) { return window->owner != pid; });
    return own;
}

const Window* World::focusedWindow(pid_t pid) const
{
    const RunningProcess* owner = process(pid);
    if (!owner)
        return nullptr;
    if (const Window* main = owner->mainWindow ? window(*owner->mainWindow) : nullptr)
        return main;
    const auto own = windowsOf(pid);
    const auto shown = std::find_if(own.begin(), own.end(),
        [](const Window* candidate) { return !candidate->isMinimised && !candidate->isPartOfDesktop(); });
    return shown == own.end() ? nullptr : *shown;
}

bool World::isOnScreen(const Window& window) const
{
    const RunningProcess* owner = process(window.owner);
    return !window.isMinimised && owner && !owner->record->isHidden && showsSomewhere(window);
}

bool World::showsSomewhere(const Window& window) const
{
    return std::any_of(
        window.spaces.begin(), window.spaces.end(), [&](std::uint64_t space) { return screens_.isCurrent(space); });
}

std::optional<std::size_t> World::mainScreen() const
{
    if (screens_.all().empty())
        return std::nullopt;
    const Window* focused = frontmost_ ? focusedWindow(*frontmost_) : nullptr;
    return focused && isOnScreen(*focused) ? screens_.containing(focused->bounds) : 0;
}

std::uint64_t World::activeSpace() const
{
    const auto main = mainScreen();
    return main ? screens_.all()[*main].currentSpace : 0;
}

CGRect World::visibleFrame(const Screen& screen) const
{
    CGRect frame = screen.frame;
    frame.height -= screen.menuBarHeight;
    if (dock_.hides() || !processNamed(dockIdentifier))
        return frame;
    if (dock_.edge() == Dock::Edge::bottom) {
        frame.y += screen.dockInset;
        frame.height -= screen.dockInset;
        return frame;
    }
    if (dock_.edge() == Dock::Edge::left)
        frame.x += screen.dockInset;
    frame.width -= screen.dockInset;
    return frame;
}

// The desktop

void World::showSpace(std::uint64_t space)
{
    if (!screens_.show(space))
        return;
    notices_.windowsChanged();
    notices_.sceneChanged();
}

void World::addScreen(const Scenario::Display& display)
{
    screens_.add(display);
    notices_.displaysChanged();
    notices_.sceneChanged();
}

void World::removeScreen(std::size_t index)
{
    const Screen leaving = screens_.all().at(index);
    screens_.remove(index);
    notices_.displaysChanged();
    notices_.sceneChanged();
    if (screens_.all().empty())
        return;
    const std::uint64_t refuge = screens_.all().front().currentSpace;
    for (Window& window : windows_) {
        const auto gone = std::erase_if(window.spaces, [&](std::uint64_t space) { return !screens_.withSpace(space); });
        if (gone && window.spaces.empty())
            window.spaces.push_back(refuge);
    }
    notices_.windowsChanged();
}

void World::setScreenFrame(std::size_t index, const CGRect& frame)
{
    screens_.setFrame(index, frame);
    notices_.displaysChanged();
    notices_.sceneChanged();
}

void World::setBadge(const std::string& title, std::optional<std::string> badge)
{
    if (badge)
        dock_.badges[title] = *std::move(badge);
    else
        dock_.badges.erase(title);
    notices_.sceneChanged();
}

void World::install(Scenario::Application application)
{
    applications_.push_back(std::move(application));
}

// What is wrong with it

ProcessFaults& World::processFaults(pid_t pid)
{
    assert(find(pid));
    return find(pid)->faults;
}

WindowFaults& World::windowFaults(std::uint32_t number)
{
    assert(find(number));
    return find(number)->faults;
}

void World::setManualAccessibility(pid_t pid, bool on)
{
    if (RunningProcess* process = find(pid))
        process->hasManualAccessibility = on;
}

RunningProcess* World::processAt(const std::string& bundlePath)
{
    const auto place = std::ranges::find_if(
        processes_, [&](const RunningProcess& process) { return process.record->bundlePath == bundlePath; });
    return place == processes_.end() ? nullptr : &*place;
}

RunningProcess* World::find(pid_t pid)
{
    return const_cast<RunningProcess*>(process(pid));
}

Window* World::find(std::uint32_t number)
{
    return const_cast<Window*>(window(number));
}

pid_t World::newPid()
{
    while (process(nextPid_))
        ++nextPid_;
    return nextPid_++;
}

std::uint32_t World::newNumber()
{
    while (window(nextNumber_))
        ++nextNumber_;
    return nextNumber_++;
}

}
