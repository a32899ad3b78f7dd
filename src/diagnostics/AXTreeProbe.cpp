#include "diagnostics/AXTreeProbe.h"

#include "diagnostics/FullScreenProbe.h"
#include "diagnostics/ProbedApplication.h"
#include "diagnostics/Report.h"
#include "diagnostics/WindowProbe.h"
#include "foundation/NSString.h"
#include "foundation/NSThread.h"
#include "system/Attribute.h"

#include <algorithm>

namespace {

constexpr const char* prefix = "[axtree] ";
constexpr double messagingTimeout = 5.0;
constexpr int greatestDepth = 13;
constexpr int greatestIndent = 8;
constexpr std::size_t mostChildren = 60;

void report(const std::string& text)
{
    Report::line(prefix, text);
}

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

bool isOfPlayer(const std::string& label)
{
    const std::string small = lowercaseString(label);
    const char* words[] = { "play", "pause", "next", "previous" };
    return std::ranges::any_of(words, [&](const char* word) { return small.find(word) != std::string::npos; });
}

/// What is missing where an application's elements can't be read.
const char* hint(AXError error)
{
    switch (error) {
    case kAXErrorAPIDisabled:
        return " \u2014 this desktop offers no accessibility";
    case kAXErrorNotImplemented:
        return " \u2014 the application takes no part in accessibility";
    case kAXErrorCannotComplete:
        return " \u2014 the application doesn't answer";
    default:
        return "";
    }
}

}

std::string AXTreeProbe::number(const AXUIElement& element, std::string_view attribute)
{
    AXValue value;
    if (AXUIElementCopyAttributeValue(element, attribute, value) != kAXErrorSuccess)
        return "-";
    const auto number = value.number();
    return number ? Report::number(*number) : "-";
}

void AXTreeProbe::reportNode(const AXUIElement& element, int depth)
{
    using WindowProbe::string;
    const std::string indent(static_cast<std::size_t>(2 * std::min(depth, greatestIndent)), ' ');
    const std::string role = string(element, "AXRole");
    if (role == "AXSlider" || role == "AXProgressIndicator") {
        ++slidersFound_;
        report(indent + "[" + role + "] value=" + number(element, "AXValue") + " min=" + number(element, "AXMinValue")
            + " max=" + number(element, "AXMaxValue") + " desc=" + quoted(string(element, "AXDescription")));
    } else if (role == "AXStaticText" || role == "AXHeading") {
        const std::string text = string(element, "AXValue");
        if (text.empty() || text == "-")
            return;
        ++textFound_;
        report(indent + "[text] " + quoted(text));
    } else if (role == "AXButton") {
        const std::string title = string(element, "AXTitle");
        const std::string label = title.empty() || title == "-" ? string(element, "AXDescription") : title;
        if (isOfPlayer(label))
            report(indent + "[button] " + quoted(label));
    }
}

void AXTreeProbe::walk(const AXUIElement& element, int depth, int maxDepth)
{
    if (depth > maxDepth || limit_.isOver())
        return;
    ++nodesSeen_;
    reportNode(element, depth);
    const auto children = Attribute::elements(element, "AXChildren");
    if (!children)
        return;
    for (std::size_t index = 0; index < std::min(children->size(), mostChildren); ++index)
        walk((*children)[index], depth + 1, maxDepth);
}

void AXTreeProbe::run(const std::string& appNameFragment)
{
    const auto application = ProbedApplication::find(appNameFragment, prefix);
    if (!application)
        return;
    report("app = " + Report::nameOf(*application) + " pid=" + std::to_string(application->processIdentifier()));
    const AXUIElement element = Attribute::application(application->processIdentifier(), messagingTimeout);
    report("AXManualAccessibility -> "
        + FullScreenProbe::describe(AXUIElementSetAttributeValue(element, "AXManualAccessibility", true)));
    NSThread::sleepForTimeInterval(1.5);

    AXValue children;
    const AXError error = AXUIElementCopyAttributeValue(element, "AXChildren", children);
    if (error != kAXErrorSuccess)
        report("AXChildren -> " + FullScreenProbe::describe(error) + hint(error));
    AXTreeProbe probe;
    if (error == kAXErrorSuccess)
        probe.walk(element, 0, greatestDepth);
    report("");
    if (probe.limit_.isOver())
        report("out of time after " + std::to_string(probe.nodesSeen_) + " nodes: the tree goes on");
    report("=== found " + std::to_string(probe.textFound_) + " text nodes, " + std::to_string(probe.slidersFound_)
        + " sliders ===");
}
