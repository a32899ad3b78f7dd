#include "embedded/World.h"

#include <unistd.h>

#include <algorithm>

namespace embedded {

namespace {

/// Seconds until the system has relaunched the Dock.
constexpr double dockRelaunchDelay = 0.1;

Scenario::Process ownProcess(pid_t pid)
{
    return { .pid = pid,
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

void World::launchOwnProgram(pid_t pid)
{
    launch(ownProcess(pid));
}

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
    const RunningProcess* running = processAt(application.path);
    if (!running) {
        launch(application);
        return;
    }

    const pid_t pid = running->pid();
    const auto own = windowsOf(pid);
    const bool showsOne = std::any_of(own.begin(), own.end(), [](const Window* each) { return !each->isMinimised; });
    if (own.empty())
        openWindowOf(*running, application);
    else if (!showsOne)
        setMinimised(own.front()->number, false);
    activate(pid);
}

void World::openAnother(const Scenario::Application& application)
{
    const RunningProcess* running = processAt(application.path);
    if (!running) {
        launch(application);
        return;
    }
    const pid_t pid = running->pid();
    openWindowOf(*running, application);
    activate(pid);
}

/// The first of those that it opens when it is launched.
void World::openWindowOf(const RunningProcess& process, const Scenario::Application& application)
{
    if (application.windows.empty())
        return;
    Scenario::Window window = application.windows.front();
    window.owner = process.pid();
    open(window);
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
    startUnlessDescribed(ownProcess(getpid()));
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
    giveWay(pid);
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
    giveWay(pid);
}

void World::giveWay(pid_t pid)
{
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
    noteLook();
    if (pid)
        notices_.process(host::ProcessEvent::activated, find(*pid)->record);
    else
        notices_.windowsChanged();
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

}
