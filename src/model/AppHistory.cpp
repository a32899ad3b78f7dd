#include "model/AppHistory.h"

#include "appkit/NSWorkspace.h"
#include "base/PerDesktop.h"
#include "foundation/NSProcessInfo.h"
#include "log/Log.h"

#include <utility>

namespace {

struct History {
    NSNotificationCenter::Token observer;
    std::optional<pid_t> current;
    std::optional<pid_t> previous;
};

History& history()
{
    return perDesktop<History>();
}

void noteActivation(const NSNotification& notification)
{
    const auto entry = notification.userInfo.find(NSWorkspaceApplicationKey);
    if (entry == notification.userInfo.end())
        return;
    const auto* application = std::any_cast<NSRunningApplication>(&entry->second);
    if (!application)
        return;
    const pid_t pid = application->processIdentifier();
    if (pid == NSProcessInfo::processIdentifier() || pid == history().current)
        return;

    history().previous = std::exchange(history().current, pid);
    const auto previous = history().previous;
    Log::debug("history: current=", application->localizedName().value_or("?"),
        " previous=", previous ? std::to_string(*previous) : "-");
}

}

namespace AppHistory {

void start()
{
    NSWorkspace& workspace = NSWorkspace::sharedWorkspace();
    workspace.notificationCenter().removeObserver(history().observer);
    history() = {};
    history().observer
        = workspace.notificationCenter().addObserver(NSWorkspaceDidActivateApplicationNotification, noteActivation);
    if (const auto frontmost = workspace.frontmostApplication())
        history().current = frontmost->processIdentifier();
}

std::optional<pid_t> previous()
{
    return history().previous;
}

}
