#include "embedded/World.h"

#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace embedded {

namespace {

/// Above every process identifier that the system gives, so that none is also a real process's.
constexpr pid_t firstPid = 5'000'000;
/// Seconds until the system has relaunched the Dock.
constexpr double dockRelaunchDelay = 0.1;

Scenario::Process ownProcess()
{
    return { .pid = getpid(),
        .name = "Vantry",
        .bundleIdentifier = "com.merrowen.vantry",
        .bundlePath = "/Applications/Vantry.app",
        .icon = "application",
        .policy = host::ActivationPolicy::accessory,
        .faults = {} };
}

Scenario::Process dockProcess()
{
    return { .name = "Dock",
        .bundleIdentifier = dockIdentifier,
        .bundlePath = "/System/Library/CoreServices/Dock.app",
        .icon = {},
        .policy = host::ActivationPolicy::accessory,
        .faults = {} };
}

Scenario::Process finderProcess()
{
    return { .name = "Finder",
        .bundleIdentifier = finderIdentifier,
        .bundlePath = "/System/Library/CoreServices/Finder.app",
        .icon = "finder",
        .faults = {} };
}

}

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

// Programs

pid_t World::launch(Scenario::Process process)
{
    if (process.pid == 0)
        process.pid = newPid();
    const pid_t pid = process.pid;
    start(std::move(process));
    notices_.process(host::ProcessEvent::launched, find(pid)->record);
    return pid;
}

pid_t World::launch(const Scenario::Application& application)
{
    auto windows = application.windows;
    const pid_t pid = launch({ .name = application.displayName,
        .bundleIdentifier = application.bundleIdentifier,
        .bundlePath = application.path,
        .icon = application.icon,
        .faults = {} });
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        window->owner = pid;
        open(*window);
    }
    activate(pid);
    return pid;
}

void World::open(const Scenario::Application& application)
{
    const auto running = std::find_if(processes_.begin(), processes_.end(),
        [&](const RunningProcess& process) { return process.record->bundlePath == application.path; });
    if (running == processes_.end()) {
        launch(application);
        return;
    }

    const pid_t pid = running->pid();
    const auto own = windowsOf(pid);
    const bool showsOne = std::any_of(own.begin(), own.end(), [](const Window* each) { return !each->isMinimised; });
    if (own.empty() && !application.windows.empty()) {
        Scenario::Window window = application.windows.front();
        window.owner = pid;
        open(window);
    } else if (!own.empty() && !showsOne) {
        setMinimised(own.front()->number, false);
    }
    activate(pid);
}

void World::start(Scenario::Process process)
{
    RunningProcess running;
    running.record = std::make_shared<const host::Process>(host::Process { .pid = process.pid,
        .policy = process.policy,
        .bundleIdentifier = std::move(process.bundleIdentifier),
        .bundlePath = std::move(process.bundlePath),
        .localizedName = std::move(process.name),
        .icon = icons_.find(process.icon),
        .isHidden = process.isHidden });
    running.icon = std::move(process.icon);
    running.faults = std::move(process.faults);
    processes_.push_back(std::move(running));
}

void World::startOwnPrograms()
{
    const auto startUnlessDescribed = [&](Scenario::Process process) {
        if (processNamed(*process.bundleIdentifier) || this->process(process.pid))
            return;
        if (process.pid == 0)
            process.pid = newPid();
        start(std::move(process));
    };
    if (!faults_.dockMissing)
        startUnlessDescribed(dockProcess());
    startUnlessDescribed(finderProcess());
    startUnlessDescribed(ownProcess());
}

void World::startDock()
{
    if (faults_.dockMissing || processNamed(dockIdentifier))
        return;
    dock_.readPreferences();
    launch(dockProcess());
    notices_.displaysChanged();
    notices_.sceneChanged();
}

void World::quit(pid_t pid)
{
    const RunningProcess* leaving = process(pid);
    if (!leaving)
        return;
    closeAll(pid);

    const auto record = leaving->record;
    const bool wasDock = leaving->isDock();
    std::erase_if(processes_, [&](const RunningProcess& process) { return process.pid() == pid; });
    notices_.process(host::ProcessEvent::terminated, record);
    if (frontmost_ == pid)
        setFrontmost(nextFrontmost(pid));
    if (wasDock)
        later_.after(dockRelaunchDelay, [this] { startDock(); });
    notices_.sceneChanged();
}

void World::activate(pid_t pid)
{
    RunningProcess* process = find(pid);
    if (!process)
        return;
    setHidden(*process, false);
    bringWindowsForward(pid);
    setFrontmost(pid);
}

void World::hide(pid_t pid)
{
    RunningProcess* process = find(pid);
    if (!process || process->record->isHidden)
        return;
    setHidden(*process, true);
    if (frontmost_ == pid)
        setFrontmost(nextFrontmost(pid));
}

void World::unhide(pid_t pid)
{
    if (RunningProcess* process = find(pid))
        setHidden(*process, false);
}

void World::setHidden(RunningProcess& process, bool hidden)
{
    if (process.record->isHidden == hidden)
        return;
    host::Process changed = *process.record;
    changed.isHidden = hidden;
    process.record = std::make_shared<const host::Process>(std::move(changed));
    notices_.process(hidden ? host::ProcessEvent::hidden : host::ProcessEvent::unhidden, process.record);
    notices_.sceneChanged();
}

void World::setFrontmost(std::optional<pid_t> pid)
{
    if (frontmost_ == pid)
        return;
    frontmost_ = pid;
    if (pid)
        notices_.process(host::ProcessEvent::activated, find(*pid)->record);
    notices_.sceneChanged();
}

std::optional<pid_t> World::nextFrontmost(pid_t leaving) const
{
    for (const Window* window : stack()) {
        if (window->owner == leaving || window->layer != 0 || !isOnScreen(*window))
            continue;
        if (process(window->owner)->record->policy == host::ActivationPolicy::regular)
            return window->owner;
    }
    const RunningProcess* finder = processNamed(finderIdentifier);
    if (!finder || finder->pid() == leaving)
        return std::nullopt;
    return finder->pid();
}

void World::bringWindowsForward(pid_t pid)
{
    const auto own = windowsOf(pid);
    const auto front = std::find_if(own.begin(), own.end(),
        [](const Window* window) { return !window->isMinimised && !window->isPartOfDesktop(); });
    if (front == own.end())
        return;
    const bool showsOne
        = std::any_of(own.begin(), own.end(), [&](const Window* window) { return isOnScreen(*window); });
    if (!showsOne && !(*front)->spaces.empty())
        showSpace((*front)->spaces.front());
    std::stable_partition(windows_.begin(), windows_.end(), [&](const Window& window) { return window.owner == pid; });
    notices_.sceneChanged();
}

// Windows

std::uint32_t World::open(Scenario::Window described)
{
    Window window;
    window.number = described.number ? described.number : newNumber();
    window.owner = described.owner;
    window.title = std::move(described.title);
    window.layer = described.layer;
    window.bounds = described.bounds;
    window.isMinimised = described.isMinimised;
    window.isAccessible = described.isAccessible;
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
    owner->mainWindow = number;
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
    if (RunningProcess* owner = find(window->owner); owner && owner->mainWindow == number)
        owner->mainWindow.reset();
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
