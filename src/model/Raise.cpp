#include "model/Raise.h"

#include "appkit/NSWorkspace.h"
#include "base/PerDesktop.h"
#include "foundation/DispatchQueue.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "system/Attribute.h"
#include "system/WindowElement.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <memory>
#include <unordered_set>
#include <vector>

// All of it but the entry points runs on the raise queue, which touches the accessibility interface and nothing shared.

namespace {

using Raise::Target;
using Elements = std::vector<AXUIElement>;

constexpr int mostAttempts = 8;
constexpr double secondsBetweenAttempts = 0.15;
constexpr double messagingTimeout = 0.35;
/// In square points: a smaller window is a panel or a notice that comes and goes.
constexpr double leastSubstantialArea = 120'000;

struct State {
    std::atomic<std::uint64_t> clickStarted = 0;
    /// The processes on which "AXManualAccessibility" was set. Raise queue only.
    std::unordered_set<pid_t> manualAccessibilityDone;
    /// Last, so that it ends its thread before the rest goes.
    std::unique_ptr<DispatchQueue> queue = DispatchQueue::serial("com.merrowen.vantry.raise");
};

bool isMinimised(const AXUIElement& window)
{
    return Attribute::boolean(window, "AXMinimized").value_or(false);
}

/// 0 when the size can't be read.
double area(const AXUIElement& window)
{
    const CGSize size = Attribute::size(window, "AXSize").value_or(CGSize());
    return size.width * size.height;
}

bool isSubstantial(const AXUIElement& window)
{
    return area(window) >= leastSubstantialArea;
}

/// The first of the largest; there is at least one.
AXUIElement largest(const Elements& windows)
{
    std::vector<double> areas;
    std::ranges::transform(windows, std::back_inserter(areas), area);
    return windows[static_cast<std::size_t>(std::ranges::max_element(areas) - areas.begin())];
}

/// The focused window unless it is minimised, else the largest that isn't, else the largest.
AXUIElement pickWindow(const AXUIElement& application, const Elements& windows)
{
    if (const auto focused = Attribute::element(application, "AXFocusedWindow"); focused && !isMinimised(*focused))
        return *focused;
    Elements visible;
    std::ranges::remove_copy_if(windows, std::back_inserter(visible), isMinimised);
    return largest(visible.empty() ? windows : visible);
}

/// Has the application report its windows and come forward.
void prepare(State& state, const AXUIElement& application, pid_t pid)
{
    if (state.manualAccessibilityDone.insert(pid).second)
        Timing::measure("raise: AXManualAccessibility",
            [&] { AXUIElementSetAttributeValue(application, "AXManualAccessibility", true); });
    Timing::measure("raise: AXFrontmost", [&] { AXUIElementSetAttributeValue(application, "AXFrontmost", true); });
}

bool raise(const State& state, const AXUIElement& window, const Target& target, std::size_t windowCount)
{
    const bool wasMinimised = isMinimised(window);
    if (wasMinimised)
        Log::debug("raise: un-minimising ", target.name);
    if (!(wasMinimised ? WindowElement::bringForward(window) : WindowElement::raise(window)))
        return false;
    Log::debug("raise: ", target.name, " ok (", windowCount, " windows)");
    Timing::since(state.clickStarted, "CLICK TOTAL (" + target.name + ")");
    return true;
}

void reopen(const Target& target)
{
    if (!target.bundleURL) {
        Log::debug("raise: gave up on ", target.name);
        return;
    }
    Log::debug("raise: no windows for ", target.name, ", reopening");
    DispatchQueue::main().async(
        [url = *target.bundleURL] { NSWorkspace::sharedWorkspace().openApplicationAtURL(url, { .activates = true }); });
}

enum class Outcome { raised, onlyTransientWindows, nothingYet };

Outcome attempt(State& state, const Target& target)
{
    const AXUIElement application = Attribute::application(target.pid, messagingTimeout);
    prepare(state, application, target.pid);
    const auto windows
        = Timing::measure("raise: AXWindows", [&] { return Attribute::elements(application, "AXWindows"); });
    if (!windows || windows->empty())
        return Outcome::nothingYet;
    if (!Timing::measure("raise: isSubstantial scan", [&] { return std::ranges::any_of(*windows, isSubstantial); }))
        return Outcome::onlyTransientWindows;
    const AXUIElement window = Timing::measure("raise: pickWindow", [&] { return pickWindow(application, *windows); });
    return raise(state, window, target, windows->size()) ? Outcome::raised : Outcome::nothingYet;
}

void raiseAWindow(State& state, const Target& target, int attemptsLeft)
{
    if (attemptsLeft < 1) {
        reopen(target);
        return;
    }
    switch (attempt(state, target)) {
    case Outcome::raised:
        return;
    case Outcome::onlyTransientWindows:
        Log::debug("raise: ", target.name, " has only transient windows, reopening");
        reopen(target);
        return;
    case Outcome::nothingYet:
        state.queue->asyncAfter(
            secondsBetweenAttempts, [&state, target, attemptsLeft] { raiseAWindow(state, target, attemptsLeft - 1); });
        return;
    }
}

}

namespace Raise {

void start(Target target)
{
    State& state = perDesktop<State>();
    state.queue->async([&state, target = std::move(target)] { raiseAWindow(state, target, mostAttempts); });
}

void noteClick()
{
    perDesktop<State>().clickStarted = Timing::now();
}

}
