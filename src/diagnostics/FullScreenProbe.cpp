#include "diagnostics/FullScreenProbe.h"

#include "appkit/NSScreen.h"
#include "diagnostics/Report.h"
#include "diagnostics/TimeLimit.h"
#include "diagnostics/WindowProbe.h"
#include "foundation/NSThread.h"
#include "look/Metrics.h"
#include "system/Attribute.h"
#include "system/SpaceScanner.h"

#include <algorithm>

namespace {

constexpr double messagingTimeout = 2.0;
/// Windows get their size in their own time.
constexpr double settlingTime = 0.3;

void report(const std::string& text)
{
    Report::line("[probe] ", text);
}

std::string settable(const AXUIElement& window, const char* attribute)
{
    bool settable = false;
    AXUIElementIsAttributeSettable(window, attribute, settable);
    return Report::flag(settable);
}

std::string position(const AXUIElement& window)
{
    const auto point = Attribute::point(window, "AXPosition");
    return point ? Report::number(point->x) + "," + Report::number(point->y) : "unavailable";
}

void describeWindow(const AXUIElement& window)
{
    report("  AXFullScreen = " + WindowProbe::boolean(window, "AXFullScreen"));
    report("  current position = " + position(window));
    report("  current size     = " + FullScreenProbe::readSize(window));
    report(
        "  size settable = " + settable(window, "AXSize") + ", position settable = " + settable(window, "AXPosition"));
    report("  AXFullScreen settable = " + settable(window, "AXFullScreen"));
}

void changeWindow(const AXUIElement& window, CGSize target)
{
    using FullScreenProbe::describe;
    using FullScreenProbe::readSize;
    report("  SET AXFullScreen=false -> " + describe(AXUIElementSetAttributeValue(window, "AXFullScreen", false)));
    NSThread::sleepForTimeInterval(1.5);
    report("  AXFullScreen after set = " + WindowProbe::boolean(window, "AXFullScreen"));
    report("  size after exiting     = " + readSize(window));
    report("  SET size -> " + describe(AXUIElementSetAttributeValue(window, "AXSize", target)));
    NSThread::sleepForTimeInterval(settlingTime);
    report("  size after set   = " + readSize(window));
}

void probeWindowsOf(const AXUIElement& application, CGSize target, const TimeLimit& limit)
{
    AXValue value;
    const AXError error = AXUIElementCopyAttributeValue(application, "AXWindows", value);
    if (error != kAXErrorSuccess)
        return report("  AXWindows error: " + FullScreenProbe::describe(error) + " \u2014 cannot probe this app");
    const auto windows = value.elements();
    if (!windows)
        return report("  AXWindows returned success but value was not a window array \u2014 cannot probe");
    if (windows->empty())
        return report("  AXWindows returned success but ZERO windows \u2014 app is not exposing them");
    report("  AXWindows returned " + std::to_string(windows->size()) + " window(s)");
    for (std::size_t index = 0; index < windows->size(); ++index) {
        if (limit.isOver())
            return report("  out of time: " + std::to_string(index) + " of them looked at");
        report("  --- window " + std::to_string(index));
        describeWindow((*windows)[index]);
        changeWindow((*windows)[index], target);
    }
}

void probeSpace(const Space& space, CGSize target, const TimeLimit& limit)
{
    if (!space.ownerPID)
        return report("a space without an owner");
    const pid_t pid = *space.ownerPID;
    const auto owner = NSRunningApplication::runningApplication(pid);
    const auto number = std::to_string(pid);
    report((owner && owner->localizedName() ? *owner->localizedName() : "pid:" + number) + " (pid " + number + ")");
    const AXUIElement application = Attribute::application(pid, messagingTimeout);
    report("AXManualAccessibility -> "
        + FullScreenProbe::describe(AXUIElementSetAttributeValue(application, "AXManualAccessibility", true)));
    probeWindowsOf(application, target, limit);
}

}

std::string FullScreenProbe::describe(AXError error)
{
    switch (error) {
    case kAXErrorSuccess:
        return "success";
    case kAXErrorIllegalArgument:
        return "illegalArgument";
    case kAXErrorInvalidUIElement:
        return "invalidUIElement";
    case kAXErrorCannotComplete:
        return "cannotComplete";
    case kAXErrorAttributeUnsupported:
        return "attributeUnsupported";
    case kAXErrorActionUnsupported:
        return "actionUnsupported";
    case kAXErrorNotImplemented:
        return "notImplemented";
    case kAXErrorAPIDisabled:
        return "apiDisabled";
    case kAXErrorNoValue:
        return "noValue";
    }
    return "error " + std::to_string(static_cast<int>(error));
}

std::string FullScreenProbe::readSize(const AXUIElement& window)
{
    AXValue value;
    if (AXUIElementCopyAttributeValue(window, "AXSize", value) != kAXErrorSuccess)
        return "unavailable";
    const auto size = value.size();
    return size ? Report::size(*size) : "unreadable";
}

void FullScreenProbe::run()
{
    const bool isTrusted = AXIsProcessTrustedWithOptions(false);
    report("accessibility trusted = " + Report::flag(isTrusted));
    if (!isTrusted)
        return report("STOP: grant Accessibility to Vantry, then re-run.");
    const auto screen = NSScreen::mainScreen();
    if (!screen)
        return report("STOP: there is no screen.");

    const CGRect frame = screen->frame();
    const double barHeight = Metrics::current().barHeight();
    const CGSize target { frame.width, frame.height - barHeight };
    report("screen frame = " + Report::rect(frame));
    report(
        "target height = " + Report::number(target.height) + " (screen minus " + Report::number(barHeight) + "pt bar)");

    std::vector<Space> spaces = SpaceScanner::scan();
    std::erase_if(spaces, [](const Space& space) { return !space.isFullScreen(); });
    report("found " + std::to_string(spaces.size()) + " full-screen spaces");
    const TimeLimit limit;
    for (const Space& space : spaces) {
        if (limit.isOver()) {
            report("out of time: the rest isn't looked at");
            break;
        }
        probeSpace(space, target, limit);
    }
    report("=== probe complete ===");
}
