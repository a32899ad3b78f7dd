#include "tamer/FocusedStage.h"

#include "appkit/NSWorkspace.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSBundle.h"
#include "log/Log.h"
#include "settings/Settings.h"
#include "system/Attribute.h"
#include "system/Displays.h"
#include "system/WindowIndex.h"
#include "tamer/Placement.h"
#include "tamer/TargetGeometry.h"

#include <algorithm>

namespace {

using Placement::whole;

/// How long a window takes to leave full screen, in seconds.
constexpr double fullScreenSettleDelay = 0.7;
/// No window is made lower than this by being shrunk off the bar.
constexpr double heightFloor = 200;

struct FocusedWindow {
    AXUIElement element;
    Placement::WindowName name;
    std::string appName;
};

std::optional<AXUIElement> focusedElement(const AXUIElement& application)
{
    AXValue value;
    if (AXUIElementCopyAttributeValue(application, "AXFocusedWindow", value) != kAXErrorSuccess)
        return std::nullopt;
    const auto element = value.element();
    if (!element)
        Log::debug("tamer: focused window was not an AXUIElement");
    return element;
}

/// The frontmost program's, unless that is this one. Absent while it is minimised.
std::optional<FocusedWindow> focusedWindow()
{
    const auto front = NSWorkspace::sharedWorkspace().frontmostApplication();
    if (!front || front->bundleIdentifier() == NSBundle::mainBundle().bundleIdentifier())
        return std::nullopt;
    const pid_t pid = front->processIdentifier();
    const AXUIElement application = Attribute::application(pid, Placement::messagingTimeout);
    AXUIElementSetAttributeValue(application, "AXManualAccessibility", true);
    const auto element = focusedElement(application);
    const auto number = element ? Attribute::windowNumber(*element) : std::nullopt;
    if (!number || Attribute::boolean(*element, "AXMinimized").value_or(false))
        return std::nullopt;
    return FocusedWindow { *element, { pid, *number }, front->localizedName().value_or("?") };
}

/// Absent for a window too small or too passing for the index.
std::optional<NSScreen> screenOfWindow(std::uint32_t number)
{
    const auto processes = WindowIndex::byPID();
    for (const auto& [pid, windows] : *processes) {
        const auto entry = std::ranges::find(windows, number, &WindowEntry::id);
        if (entry != windows.end())
            return Displays::screenContaining(entry->bounds);
    }
    return std::nullopt;
}

void exitFullScreen(const FocusedWindow& window, const CGRect& target)
{
    const AXError error = Placement::leaveFullScreen(window.element);
    if (error != kAXErrorSuccess) {
        Log::debug("tamer: exit full-screen failed (", static_cast<int>(error), ")");
        return;
    }
    DispatchQueue::main().asyncAfter(
        fullScreenSettleDelay, [window, target] { Placement::place(window.element, window.name, target); });
}

/// To just below the bar, lower only if it wouldn't fit.
void moveBelowBar(const FocusedWindow& window, const CGRect& frame, const CGRect& target)
{
    const double height = std::min(frame.height, target.height);
    std::string heightNote;
    if (height < frame.height)
        heightNote = ", height " + std::to_string(whole(frame.height)) + " -> " + std::to_string(whole(height));
    Log::debug("tamer: moving ", window.appName, " window ", window.name.number, " clear of the top bar", heightNote);
    Placement::place(window.element, window.name, { frame.x, target.minY(), frame.width, height });
}

void shrinkOffBar(const FocusedWindow& window, const CGRect& frame, const CGRect& target)
{
    const CGRect shrunk { frame.x, frame.y, frame.width, std::max(target.maxY() - frame.y, heightFloor) };
    Log::debug("tamer: nudging ", window.appName, " window ", window.name.number, " height ", whole(frame.height),
        " -> ", whole(shrunk.height));
    Placement::setSize(window.element, shrunk.size());
    Placement::remember(window.name, shrunk);
}

void nudgeIfOverlapping(const FocusedWindow& window, const CGRect& target)
{
    const auto position = Attribute::point(window.element, "AXPosition");
    const auto size = position ? Attribute::size(window.element, "AXSize") : std::nullopt;
    if (!size)
        return;
    const CGRect frame { position->x, position->y, size->width, size->height };
    if (!WindowTamer::overlapsBar(frame, target))
        return;
    const auto placed = Placement::placed(window.name);
    if (placed && Placement::isSamePlace(*placed, frame))
        return;
    if (isTop(Settings::barEdge()))
        moveBelowBar(window, frame, target);
    else
        shrinkOffBar(window, frame, target);
}

void tame(const FocusedWindow& window, const CGRect& target)
{
    const auto placed = Placement::placed(window.name);
    if (placed && *placed != target) {
        Log::debug("tamer: bar geometry changed, re-placing window ", window.name.number);
        Placement::place(window.element, window.name, target);
        return;
    }
    if (Attribute::boolean(window.element, "AXFullScreen").value_or(false)) {
        Log::debug("tamer: ", window.appName, " window ", window.name.number, " is full-screen, converting");
        exitFullScreen(window, target);
        return;
    }
    nudgeIfOverlapping(window, target);
}

}

void FocusedStage::run()
{
    const auto window = focusedWindow();
    if (!window)
        return;
    if (const auto target = WindowTamer::targetRect(screenOfWindow(window->name.number)))
        tame(*window, *target);
}
