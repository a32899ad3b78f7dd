#include "model/Click.h"

#include "appkit/NSWorkspace.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "model/AppHistory.h"
#include "model/Raise.h"
#include "system/ShowDesktop.h"
#include "system/WindowIndex.h"
#include "system/WindowRaise.h"

namespace {

bool isFrontmost(pid_t pid)
{
    const auto frontmost = NSWorkspace::sharedWorkspace().frontmostApplication();
    return frontmost && frontmost->processIdentifier() == pid;
}

bool hasCountedWindow(pid_t pid)
{
    return Timing::measure("click: window index", [&] { return WindowIndex::byPID()->contains(pid); });
}

/// Whether the user is looking at the application already, so that a click on it can only mean the way back.
bool isInUse(const NSRunningApplication& application)
{
    const pid_t pid = application.processIdentifier();
    const bool hasWindow = hasCountedWindow(pid);
    return isFrontmost(pid) && hasWindow && !application.isHidden() && !ShowDesktop::isShowingDesktop();
}

void unhideAndRaise(const NSRunningApplication& application, std::string name, std::optional<NSURL> bundleURL)
{
    application.unhide();
    application.activate();
    Raise::start({ application.processIdentifier(), std::move(name), std::move(bundleURL) });
}

void activatePreviousApp()
{
    const auto pid = AppHistory::previous();
    const auto application = pid ? NSRunningApplication::runningApplication(*pid) : std::nullopt;
    if (!application) {
        Log::debug("back: no previous app recorded");
        return;
    }
    const std::string name = application->localizedName().value_or("?");
    Log::debug("back: returning to ", name, " pid=", *pid);
    unhideAndRaise(*application, name, application->bundleURL());
}

}

namespace DockModel {

void handleClick(const BarItem& item)
{
    Raise::noteClick();
    if (item.windowID && item.pid) {
        Log::debug("click: window ", *item.windowID, " of ", item.name);
        bringForward(item);
        return;
    }
    if (const auto application = runningApplication(item); application && isInUse(*application))
        activatePreviousApp();
    else
        activate(item);
}

void bringForward(const BarItem& item)
{
    if (item.windowID && item.pid)
        WindowIndex::raise(*item.windowID, *item.pid);
    else if (runningApplication(item))
        activate(item);
}

void activate(const BarItem& item)
{
    if (const auto application = runningApplication(item)) {
        Log::debug("activate: ", item.name, " pid=", *item.pid, " hidden=", application->isHidden());
        unhideAndRaise(*application, item.name, item.bundleURL);
    } else if (item.bundleURL) {
        Log::debug("launch: ", item.name, " at ", item.bundleURL->path());
        NSWorkspace::sharedWorkspace().openApplicationAtURL(*item.bundleURL, { .activates = true });
    }
}

}
