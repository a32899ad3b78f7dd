#include "diagnostics/ProbedApplication.h"

#include "accessibility/AXUIElement.h"
#include "appkit/NSWorkspace.h"
#include "diagnostics/Report.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSString.h"

#include <algorithm>

namespace {

std::optional<NSRunningApplication> firstMatching(const std::string& fragment)
{
    const auto running = NSWorkspace::sharedWorkspace().runningApplications();
    const auto first = std::ranges::find_if(running, [&](const NSRunningApplication& application) {
        return ProbedApplication::matches(application.localizedName().value_or(""), fragment);
    });
    return first == running.end() ? std::nullopt : std::optional(*first);
}

}

bool ProbedApplication::matches(const std::string& name, const std::string& fragment)
{
    return lowercaseString(name).find(lowercaseString(fragment)) != std::string::npos;
}

std::optional<NSRunningApplication> ProbedApplication::find(const std::string& fragment, const char* prefix)
{
    bool isPermitted = false;
    std::optional<NSRunningApplication> application;
    DispatchQueue::mainSync([&] {
        isPermitted = AXIsProcessTrustedWithOptions(false);
        application = firstMatching(fragment);
    });
    if (!isPermitted)
        Report::line(prefix, "STOP: no Accessibility grant");
    else if (!application)
        Report::line(prefix, "no running app matching '" + fragment + "'");
    return isPermitted ? application : std::nullopt;
}
