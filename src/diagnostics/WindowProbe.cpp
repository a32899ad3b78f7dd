#include "diagnostics/WindowProbe.h"

#include "appkit/NSWorkspace.h"
#include "diagnostics/ProbedApplication.h"
#include "diagnostics/Report.h"
#include "diagnostics/TimeLimit.h"
#include "foundation/NSThread.h"
#include "system/Attribute.h"
#include "system/SpaceScanner.h"

namespace {

constexpr const char* prefix = "[wprobe] ";
constexpr double messagingTimeout = 2.0;

void report(const std::string& text)
{
    Report::line(prefix, text);
}

/// What is asked of each window: the line's beginning, the attribute, and how it reads.
struct Row {
    const char* label;
    const char* attribute;
    std::string (*read)(const AXUIElement& element, std::string_view attribute);
};
const Row rows[] = {
    { "  title     = ", "AXTitle", WindowProbe::string },
    { "  role      = ", "AXRole", WindowProbe::string },
    { "  subrole   = ", "AXSubrole", WindowProbe::string },
    { "  minimised = ", "AXMinimized", WindowProbe::boolean },
    { "  main      = ", "AXMain", WindowProbe::boolean },
    { "  focused   = ", "AXFocused", WindowProbe::boolean },
};

void reportWindow(std::size_t index, const AXUIElement& window)
{
    report("--- window " + std::to_string(index));
    for (const Row& row : rows)
        report(row.label + row.read(window, row.attribute));
    const auto number = Attribute::windowNumber(window);
    if (!number)
        return report("  windowID = unavailable");
    std::string spaces;
    for (const auto space : SpaceScanner::spaceIDsForWindow(*number))
        spaces += (spaces.empty() ? "" : ", ") + std::to_string(space);
    report("  windowID = " + std::to_string(*number) + " spaces=[" + spaces + "]");
}

void bringForward(const NSRunningApplication& application)
{
    report("app = " + Report::nameOf(application) + " pid=" + std::to_string(application.processIdentifier())
        + " hidden=" + Report::flag(application.isHidden()) + " active=" + Report::flag(application.isActive()));
    application.unhide();
    application.activate();
    NSThread::sleepForTimeInterval(1.5);
    report("after activate: active=" + Report::flag(application.isActive()));
    report("active space = " + std::to_string(SpaceScanner::activeSpaceID()));
}

void setFrontmost(const NSRunningApplication& application, const AXUIElement& element)
{
    AXUIElementSetAttributeValue(element, "AXManualAccessibility", true);
    report("AXFrontmost before = " + WindowProbe::boolean(element, "AXFrontmost"));
    bool settable = false;
    AXUIElementIsAttributeSettable(element, "AXFrontmost", settable);
    report("AXFrontmost settable = " + Report::flag(settable));

    const AXError error = AXUIElementSetAttributeValue(element, "AXFrontmost", true);
    report("SET AXFrontmost -> " + (error == kAXErrorSuccess ? "success" : "error " + std::to_string(error)));
    NSThread::sleepForTimeInterval(1.0);
    report("AXFrontmost after  = " + WindowProbe::boolean(element, "AXFrontmost"));
    report("isActive after     = " + Report::flag(application.isActive()));
    const auto front = NSWorkspace::sharedWorkspace().frontmostApplication();
    report("frontmost app now  = " + (front ? Report::nameOf(*front) : "none"));
}

}

std::string WindowProbe::boolean(const AXUIElement& element, std::string_view attribute)
{
    const auto value = Attribute::boolean(element, attribute);
    return value ? Report::flag(*value) : "-";
}

std::string WindowProbe::string(const AXUIElement& element, std::string_view attribute)
{
    return Attribute::text(element, attribute).value_or("-");
}

void WindowProbe::run(const std::string& appNameFragment)
{
    const auto application = ProbedApplication::find(appNameFragment, prefix);
    if (!application)
        return;
    const TimeLimit limit;
    bringForward(*application);
    const AXUIElement element = Attribute::application(application->processIdentifier(), messagingTimeout);
    setFrontmost(*application, element);

    const auto windows = Attribute::elements(element, "AXWindows");
    if (!windows)
        return report("AXWindows unavailable");
    report("AXWindows count = " + std::to_string(windows->size()));
    for (std::size_t index = 0; index < windows->size(); ++index) {
        if (limit.isOver())
            return report("=== out of time: " + std::to_string(index) + " windows looked at ===");
        reportWindow(index, (*windows)[index]);
    }
    report("=== " + std::to_string(windows->size()) + " windows looked at ===");
}
