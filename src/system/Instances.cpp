#include "system/Instances.h"

#include "appkit/NSRunningApplication.h"
#include "foundation/NSBundle.h"
#include "foundation/NSProcessInfo.h"

#include <algorithm>

bool Instances::contains(pid_t pid)
{
    if (pid == NSProcessInfo::processIdentifier())
        return true;
    const auto application = NSRunningApplication::runningApplication(pid);
    return application && application->bundleIdentifier() == NSBundle::mainBundle().bundleIdentifier();
}

bool Instances::anotherRuns()
{
    const std::string identifier = NSBundle::mainBundle().bundleIdentifier().value_or("");
    const auto instances = NSRunningApplication::runningApplications(identifier);
    return std::any_of(instances.begin(), instances.end(), [](const NSRunningApplication& instance) {
        return instance.processIdentifier() != NSProcessInfo::processIdentifier();
    });
}
