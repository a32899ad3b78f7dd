#include "x11/ProcessList.h"

#include "base/Clock.h"
#include "base/RunLoop.h"
#include "freedesktop/ProcessFiles.h"
#include "x11/WindowIcon.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <iterator>
#include <ranges>
#include <utility>

namespace x11 {
namespace {

namespace StandIns = freedesktop::StandIns;

using host::ActivationPolicy;
using host::Process;
using host::ProcessEvent;

bool same(const Process& a, const Process& b)
{
    return a.pid == b.pid && a.policy == b.policy && a.bundleIdentifier == b.bundleIdentifier
        && a.bundlePath == b.bundlePath && a.localizedName == b.localizedName && a.icon == b.icon
        && a.isHidden == b.isHidden;
}

/// The window whose class tells what its process is: its first ordinary one, else its first; null when it has none.
const WindowRecord* speakerOf(const DesktopState& state, pid_t pid)
{
    const WindowRecord* first = nullptr;
    for (const WindowRecord* window : state.owned.at(pid)) {
        if (!state.isListed(*window))
            continue;
        if (window->facts.isOrdinary())
            return window;
        first = first ? first : window;
    }
    return first;
}

const std::string& firstNonEmpty(std::initializer_list<const std::string*> texts)
{
    static const std::string none;
    for (const std::string* text : texts) {
        if (!text->empty())
            return *text;
    }
    return none;
}

}

ProcessList::ProcessList(Connection& connection, const WindowMirror& mirror, WindowManager& manager,
    freedesktop::InstalledApplications& applications, std::optional<pid_t> otherInstance,
    std::function<void()> updateSoon)
    : connection_(connection)
    , mirror_(mirror)
    , manager_(manager)
    , applications_(applications)
    , otherInstance_(otherInstance)
    , updateSoon_(std::move(updateSoon))
{
}

std::shared_ptr<const Process> ProcessList::find(pid_t pid)
{
    const auto found = byPid_.find(pid);
    return found == byPid_.end() ? StandIns::instance(pid, applications_.icons().application()) : found->second;
}

// Requests

bool ProcessList::activate(pid_t pid)
{
    if (!manager_.activate(pid))
        return false;
    asked_ = pid;
    return true;
}

/// Of several, the one that is in front or on its way there; else the last that was.
bool ProcessList::bringForward(const std::string& bundlePath, const std::string& identifier)
{
    const DesktopState& state = mirror_.state();
    const auto rank = [&](pid_t pid) -> std::ptrdiff_t {
        if (pid == asked_)
            return std::ssize(state.activations);
        const WindowRecord* window = state.lastActiveOf(pid);
        return window ? std::ranges::find(state.activations, window->id) - state.activations.begin() : -1;
    };
    std::vector<pid_t> candidates;
    for (const auto& process : running_) {
        const bool isIt = process->bundlePath == bundlePath || process->bundleIdentifier == identifier;
        if (isIt && !state.windowsOf(process->pid).empty())
            candidates.push_back(process->pid);
    }
    if (candidates.empty())
        return false;
    const pid_t pid = *std::ranges::max_element(candidates, {}, rank);
    unhide(pid);
    asked_ = pid;
    return manager_.reopen(pid);
}

bool ProcessList::hide(pid_t pid)
{
    if (mirror_.state().windowsOf(pid).empty())
        return false;
    updateSoon_();
    Taken& taken = taken_[pid];
    const auto stacking = mirror_.state().frontToBack();
    return manager_.withEach(pid, [&](auto& ask, const DesktopState& state, const WindowRecord& window) {
        if (state.isIconic(window))
            return;
        const auto depth = static_cast<std::size_t>(std::ranges::find(stacking, &window) - stacking.begin());
        taken.try_emplace(window.id, TakenWindow { state.desktopOf(window), depth, window.id == state.active, false });
        ask.iconify(window);
    });
}

bool ProcessList::unhide(pid_t pid)
{
    const auto taken = taken_.extract(pid);
    if (taken.empty())
        return false;
    updateSoon_();
    for (const auto& [id, before] : taken.mapped()) {
        manager_.with(id, [&](auto& ask, const DesktopState&, const WindowRecord& window) {
            ask.deiconify(window);
            // Deiconifying can bring a window to the desktop in front.
            ask.setDesktop(window, before.desktop);
        });
    }
    returning_.merge(taken.mapped());
    return true;
}

/// A window that comes back is put in front, with the keyboard, wherever it was. Once all that come back together are
/// on their way they are put in the order in which they were, and the keyboard goes to whom it belongs.
void ProcessList::orderReturning()
{
    if (returning_.empty())
        return;
    const Taken returning = std::exchange(returning_, {});
    std::vector<xcb_window_t> order;
    std::ranges::copy(returning | std::views::keys, std::back_inserter(order));
    std::ranges::sort(order, std::greater {}, [&](xcb_window_t id) { return returning.at(id).depth; });
    for (const xcb_window_t id : order)
        manager_.with(id, [](auto& ask, const DesktopState&, const WindowRecord& window) { ask.raise(window); });

    const WindowRecord* asked = asked_ ? mirror_.state().lastActiveOf(*asked_) : nullptr;
    const auto wasActive = std::ranges::find_if(order, [&](xcb_window_t id) { return returning.at(id).wasActive; });
    const xcb_window_t front = asked && returning.contains(asked->id) ? asked->id
        : wasActive == order.end()                                    ? xcb_window_t(XCB_WINDOW_NONE)
                                                                      : *wasActive;
    bringToFront(front);
    returned_ = Returned { returning, front, RunLoop::main().clock().nanoseconds() };
}

/// A window manager that takes its time gives the keyboard to one after the other of those that come back, the right
/// one not always last. Who gets it once the right one has kept it for a moment is meant to.
void ProcessList::insistOnFront()
{
    constexpr std::uint64_t patience = 500'000'000;
    constexpr std::uint64_t moment = 100'000'000;
    const xcb_window_t active = mirror_.state().active;
    if (!returned_)
        return;
    const std::uint64_t now = RunLoop::main().clock().nanoseconds();
    if (active == returned_->front && !returned_->inFrontSince)
        returned_->inFrontSince = now;
    if (active == returned_->front || !returned_->windows.contains(active))
        return;
    const auto inFrontSince = std::exchange(returned_->inFrontSince, std::nullopt);
    if (now - returned_->at < patience && now - inFrontSince.value_or(now) < moment)
        bringToFront(returned_->front);
    else
        returned_.reset();
}

void ProcessList::bringToFront(xcb_window_t window) const
{
    manager_.with(window, [](auto& ask, const DesktopState& state, const WindowRecord& record) {
        if (state.isOnCurrentDesktop(record))
            ask.activate(record);
    });
}

bool ProcessList::terminate(pid_t pid)
{
    return manager_.withEach(
        pid, [](auto& ask, const DesktopState&, const WindowRecord& window) { ask.close(window); });
}

bool ProcessList::forceTerminate(pid_t pid)
{
    if (!find(pid) || pid == getpid())
        return false;
    return pid > 0 ? kill(pid, SIGKILL) == 0 : manager_.cutOff(pid);
}

// Following the mirror

ProcessList::Events ProcessList::update()
{
    orderReturning();
    insistOnFront();
    Events events = adopt(describeAll());
    const DesktopState& state = mirror_.state();
    const WindowRecord* active = state.find(state.active);
    const auto frontmost = active ? std::optional(active->pid) : std::nullopt;
    if (frontmost != frontmost_) {
        frontmost_ = frontmost;
        asked_.reset();
        if (const auto process = frontmost ? find(*frontmost) : nullptr)
            events.emplace_back(ProcessEvent::activated, process);
    }
    return events;
}

/// The processes that own windows, in the order in which they first did.
std::vector<pid_t> ProcessList::owners() const
{
    const auto& owned = mirror_.state().owned;
    std::vector<pid_t> result;
    for (const auto& process : running_) {
        if (owned.contains(process->pid))
            result.push_back(process->pid);
    }
    const auto firstNew = std::ssize(result);
    for (const auto& [pid, windows] : owned) {
        if (!byPid_.contains(pid))
            result.push_back(pid);
    }
    std::ranges::sort(
        result.begin() + firstNew, result.end(), {}, [&](pid_t pid) { return owned.at(pid).front()->appearance; });
    std::erase_if(result, [&](pid_t pid) { return pid == getpid() || pid == otherInstance_; });
    return result;
}

std::vector<Process> ProcessList::describeAll()
{
    const auto icon = applications_.icons().application();
    std::vector<Process> processes { StandIns::dockProcess(icon), StandIns::ownProcess(getpid(), icon) };
    if (otherInstance_)
        processes.push_back(StandIns::ownProcess(*otherInstance_, icon));
    for (const pid_t pid : owners()) {
        if (const WindowRecord* speaker = speakerOf(mirror_.state(), pid))
            processes.push_back(describe(*speaker));
    }
    finder_ = StandIns::addFinder(processes, applications_);
    return processes;
}

Process ProcessList::describe(const WindowRecord& speaker)
{
    const Identity& identity = identityOf(speaker);
    return { speaker.pid, speaker.facts.isOrdinary() ? ActivationPolicy::regular : ActivationPolicy::accessory,
        identity.identifier, identity.bundlePath, identity.name, identity.icon, isHidden(speaker.pid) };
}

/// Hidden are those that were hidden here, and of which nothing has been brought back since. A window that can't be
/// iconified doesn't count, nor does one that has opened meanwhile.
bool ProcessList::isHidden(pid_t pid)
{
    const auto place = taken_.find(pid);
    if (place == taken_.end())
        return false;
    const DesktopState& state = mirror_.state();
    bool isAnyAway = false;
    bool isAnyBack = false;
    bool showsAny = false;
    for (const WindowRecord* window : state.owned.at(pid)) {
        if (!state.isListed(*window))
            continue;
        const bool isAway = state.isIconic(*window);
        showsAny |= !isAway && !window->facts.isPartOfDesktop();
        const auto taken = place->second.find(window->id);
        if (taken == place->second.end())
            continue;
        isAnyBack |= taken->second.isAway && !isAway;
        isAnyAway |= taken->second.isAway = isAway;
    }
    const auto before = find(pid);
    const bool isHidden = !isAnyBack && (isAnyAway || !showsAny);
    if (!isHidden && (isAnyBack || (before && before->isHidden)))
        taken_.erase(place);
    return isHidden;
}

ProcessList::Events ProcessList::adopt(std::vector<Process> processes)
{
    Events events;
    std::vector<std::shared_ptr<const Process>> running;
    for (Process& process : processes) {
        const auto before = find(process.pid);
        const auto now
            = before && same(*before, process) ? before : std::make_shared<const Process>(std::move(process));
        running.push_back(now);
        if (!before)
            events.emplace_back(ProcessEvent::launched, now);
        else if (before->isHidden != now->isHidden)
            events.emplace_back(now->isHidden ? ProcessEvent::hidden : ProcessEvent::unhidden, now);
    }
    std::swap(running, running_);
    byPid_.clear();
    for (const auto& process : running_)
        byPid_.emplace(process->pid, process);
    for (const auto& before : running) {
        if (find(before->pid))
            continue;
        identities_.erase(before->pid);
        taken_.erase(before->pid);
        events.emplace_back(ProcessEvent::terminated, before);
    }
    return events;
}

// Who a process is

const ProcessList::Identity& ProcessList::identityOf(const WindowRecord& speaker)
{
    const auto known = identities_.find(speaker.pid);
    const bool isCurrent = known != identities_.end() && known->second.className == speaker.facts.className
        && known->second.instanceName == speaker.facts.instanceName;
    return isCurrent ? known->second : identities_.insert_or_assign(speaker.pid, identify(speaker)).first->second;
}

ProcessList::Identity ProcessList::identify(const WindowRecord& window)
{
    const WindowFacts& facts = window.facts;
    Identity identity { facts.className, facts.instanceName, {}, {}, {}, {} };
    if (const auto entry = applications_.entries().ofWindow(facts.className, facts.instanceName, window.pid)) {
        identity.identifier = applications_.identifierOfWindows(entry);
        identity.bundlePath = entry->bundlePath;
        identity.name = entry->entry.name;
        identity.icon = applications_.icons().named(entry->entry.icon);
    } else {
        const std::string program = freedesktop::programOf(window.pid);
        if (!facts.className.empty())
            identity.identifier = facts.className;
        identity.name = firstNonEmpty({ &facts.className, &program, &window.title() });
    }
    if (!identity.icon)
        identity.icon = drawnIcon(window);
    if (!identity.icon)
        identity.icon = applications_.icons().application();
    return identity;
}

std::shared_ptr<const IconSource> ProcessList::drawnIcon(const WindowRecord& window)
{
    const Property property
        = awaitProperty(connection_, requestProperty(connection_, window.id, connection_.atoms().netWmIcon, iconLongs));
    auto pictures = iconPixels(property.numbers(XCB_ATOM_CARDINAL));
    if (pictures.empty())
        return nullptr;
    return std::make_shared<IconSource>(IconSource { std::move(pictures) });
}

}
