#include "system/WindowRaise.h"

#include "foundation/DispatchQueue.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "system/Attribute.h"

#include <algorithm>

namespace {

constexpr double messagingTimeout = 0.35;

DispatchQueue& raiseQueue()
{
    static const auto queue = DispatchQueue::serial("com.merrowen.vantry.window-raise");
    return *queue;
}

/// On the raise queue.
void raiseOnce(std::uint32_t windowID, pid_t pid)
{
    const AXUIElement application = Attribute::application(pid, messagingTimeout);
    AXUIElementSetAttributeValue(application, "AXManualAccessibility", true);
    AXUIElementSetAttributeValue(application, "AXFrontmost", true);

    const auto windows = Attribute::elements(application, "AXWindows");
    if (!windows) {
        Log::debug("raise: no AX window list for pid ", pid);
        return;
    }
    const auto window = std::ranges::find(*windows, std::optional(windowID), Attribute::windowNumber);
    if (window == windows->end()) {
        Log::debug("raise: window ", windowID, " not in pid ", pid, "'s AX list of ", windows->size());
        return;
    }
    AXUIElementSetAttributeValue(*window, "AXMinimized", false);
    AXUIElementSetAttributeValue(*window, "AXMain", true);
    AXUIElementPerformAction(*window, "AXRaise");
    Log::debug("raise: raised window ", windowID, " of pid ", pid);
}

}

void WindowIndex::raise(std::uint32_t windowID, pid_t pid)
{
    raiseQueue().async([windowID, pid, start = Timing::now()] {
        raiseOnce(windowID, pid);
        Timing::since(start, "window raise");
    });
}
