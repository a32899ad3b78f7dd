#include "appkit/NSWorkspace.h"

#include "base/PerDesktop.h"
#include "host/Applications.h"
#include "host/Desktop.h"
#include "host/Processes.h"
#include "host/Windows.h"

const char* const NSWorkspaceApplicationKey = "NSWorkspaceApplicationKey";
const char* const NSWorkspaceActiveSpaceDidChangeNotification = "NSWorkspaceActiveSpaceDidChangeNotification";
const char* const NSWorkspaceDidActivateApplicationNotification = "NSWorkspaceDidActivateApplicationNotification";
const char* const NSWorkspaceDidLaunchApplicationNotification = "NSWorkspaceDidLaunchApplicationNotification";
const char* const NSWorkspaceDidTerminateApplicationNotification = "NSWorkspaceDidTerminateApplicationNotification";
const char* const NSWorkspaceDidHideApplicationNotification = "NSWorkspaceDidHideApplicationNotification";
const char* const NSWorkspaceDidUnhideApplicationNotification = "NSWorkspaceDidUnhideApplicationNotification";

namespace {

const char* notificationName(host::ProcessEvent event)
{
    switch (event) {
    case host::ProcessEvent::launched:
        return NSWorkspaceDidLaunchApplicationNotification;
    case host::ProcessEvent::terminated:
        return NSWorkspaceDidTerminateApplicationNotification;
    case host::ProcessEvent::activated:
        return NSWorkspaceDidActivateApplicationNotification;
    case host::ProcessEvent::hidden:
        return NSWorkspaceDidHideApplicationNotification;
    case host::ProcessEvent::unhidden:
        return NSWorkspaceDidUnhideApplicationNotification;
    }
    return "";
}

}

NSWorkspace& NSWorkspace::sharedWorkspace()
{
    return perDesktop<NSWorkspace>();
}

void NSWorkspace::followDesktop()
{
    host::Desktop& desktop = host::Desktop::current();
    desktop.processes().onEvent = [](host::ProcessEvent event, const std::shared_ptr<const host::Process>& process) {
        sharedWorkspace().center_.post(
            { notificationName(event), { { NSWorkspaceApplicationKey, NSRunningApplication(process) } } });
    };
    desktop.windows().onChange = [] { sharedWorkspace().center_.post(NSWorkspaceActiveSpaceDidChangeNotification); };
}

std::vector<NSRunningApplication> NSWorkspace::runningApplications() const
{
    const auto& running = host::Desktop::current().processes().running();
    return { running.begin(), running.end() };
}

std::optional<NSRunningApplication> NSWorkspace::frontmostApplication() const
{
    const auto pid = host::Desktop::current().processes().frontmost();
    return pid ? NSRunningApplication::runningApplication(*pid) : std::nullopt;
}

NSImage NSWorkspace::iconForFile(const std::string& path) const
{
    return NSImage(host::Desktop::current().applications().icon(path));
}

bool NSWorkspace::openApplicationAtURL(const NSURL& url, NSWorkspaceOpenConfiguration configuration) const
{
    host::Applications& applications = host::Desktop::current().applications();
    const std::string path = url.standardizedPath();
    return configuration.createsNewApplicationInstance ? applications.openAnother(path) : applications.open(path);
}

bool NSWorkspace::openURL(const NSURL& url) const
{
    return host::Desktop::current().applications().openURL(url.absoluteString());
}

void NSWorkspace::activateFileViewerSelectingURLs(const std::vector<NSURL>& urls) const
{
    for (const NSURL& url : urls)
        host::Desktop::current().applications().reveal(url.absoluteString());
}
