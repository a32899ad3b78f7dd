#include "system/ShowDesktop.h"

#include "appkit/NSWorkspace.h"
#include "base/PerDesktop.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSBundle.h"
#include "log/Log.h"
#include "system/Attribute.h"
#include "system/Dictionaries.h"
#include "system/ListedWindow.h"
#include "windowserver/CGWindow.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

using Applications = std::vector<NSRunningApplication>;

constexpr double secondsToSecondHide = 0.3;
constexpr double secondsToSettle = 0.3;
constexpr double messagingTimeout = 0.35;

struct Cleared {
    std::vector<pid_t> hiddenPIDs;
    std::vector<AXUIElement> minimisedWindows;
};

Cleared& cleared()
{
    return perDesktop<Cleared>();
}

/// A program that is hidden may show a window all the same, where the desktop lets one that opens then stay.
std::unordered_set<pid_t> ownersOnScreen()
{
    std::unordered_set<pid_t> owners;
    const auto list
        = CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, 0);
    for (const Value& entry : dictionaries(list))
        if (const auto window = ListedWindow::read(entry))
            owners.insert(window->pid);
    return owners;
}

Applications applicationsToHide()
{
    const auto showing = ownersOnScreen();
    const auto ownIdentifier = NSBundle::mainBundle().bundleIdentifier();
    Applications applications = NSWorkspace::sharedWorkspace().runningApplications();
    std::erase_if(applications, [&](const NSRunningApplication& application) {
        return application.activationPolicy() != NSApplicationActivationPolicyRegular
            || (application.isHidden() && !showing.contains(application.processIdentifier()))
            || application.bundleIdentifier() == ownIdentifier;
    });
    return applications;
}

std::vector<pid_t> identifiers(const Applications& applications)
{
    std::vector<pid_t> pids;
    std::ranges::transform(
        applications, std::back_inserter(pids), std::mem_fn(&NSRunningApplication::processIdentifier));
    return pids;
}

void hideVisible(const Applications& applications)
{
    for (const NSRunningApplication& application : applications)
        if (!application.isHidden())
            application.hide();
}

void minimiseWindows(const NSRunningApplication& application)
{
    const AXUIElement element = Attribute::application(application.processIdentifier(), messagingTimeout);
    const auto windows = Attribute::elements(element, "AXWindows");
    if (!windows)
        return;
    for (const AXUIElement& window : *windows) {
        if (Attribute::boolean(window, "AXMinimized") == true)
            continue;
        if (AXUIElementSetAttributeValue(window, "AXMinimized", true) == kAXErrorSuccess)
            cleared().minimisedWindows.push_back(window);
    }
    Log::debug("show desktop: ", application.localizedName().value_or("?"), " would not hide, minimised its windows");
}

/// Takes stock of what hid, and minimises what didn't.
void settle(const Applications& asked)
{
    Applications refusing = asked;
    const auto hidden = std::stable_partition(refusing.begin(), refusing.end(),
        [](const NSRunningApplication& application) { return !application.isHidden(); });
    cleared().hiddenPIDs = identifiers({ hidden, refusing.end() });
    refusing.erase(hidden, refusing.end());
    std::ranges::for_each(refusing, minimiseWindows);
    Log::debug("show desktop: hid ", cleared().hiddenPIDs.size(), " of ", asked.size(), ", minimised ",
        cleared().minimisedWindows.size(), " windows");
}

void clear()
{
    const Applications applications = applicationsToHide();
    if (applications.empty())
        return;
    // Noted ahead of the outcome, so that a second press restores.
    cleared().hiddenPIDs = identifiers(applications);
    for (const NSRunningApplication& application : applications)
        application.hide();

    DispatchQueue::main().asyncAfter(secondsToSecondHide, [applications] {
        hideVisible(applications);
        DispatchQueue::main().asyncAfter(secondsToSettle, [applications] { settle(applications); });
    });
}

void restore()
{
    Applications applications;
    for (const pid_t pid : std::exchange(cleared().hiddenPIDs, {}))
        if (auto application = NSRunningApplication::runningApplication(pid))
            applications.push_back(std::move(*application));
    for (const NSRunningApplication& application : applications)
        application.unhide();

    const auto windows = std::exchange(cleared().minimisedWindows, {});
    for (const AXUIElement& window : windows)
        AXUIElementSetAttributeValue(window, "AXMinimized", false);
    Log::debug("show desktop: restoring ", applications.size(), " apps and ", windows.size(), " windows");
}

bool isStillHidden(pid_t pid)
{
    const auto application = NSRunningApplication::runningApplication(pid);
    return application && application->isHidden();
}

}

namespace ShowDesktop {

bool isShowingDesktop()
{
    return !cleared().hiddenPIDs.empty() || !cleared().minimisedWindows.empty();
}

void toggle()
{
    if (isShowingDesktop())
        restore();
    else
        clear();
}

void forgetIfStale()
{
    std::erase_if(cleared().hiddenPIDs, std::not_fn(isStillHidden));
    if (cleared().hiddenPIDs.empty())
        cleared().minimisedWindows.clear();
}

}
