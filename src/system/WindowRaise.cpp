#include "system/WindowRaise.h"

#include "base/PerDesktop.h"
#include "foundation/DispatchQueue.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "system/Attribute.h"
#include "system/WindowElement.h"

#include <memory>

namespace {

constexpr double messagingTimeout = 0.35;

struct State {
    std::unique_ptr<DispatchQueue> queue = DispatchQueue::serial("com.merrowen.vantry.window-raise");
};

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
    const auto window = WindowElement::find(*windows, windowID);
    if (!window) {
        Log::debug("raise: window ", windowID, " not in pid ", pid, "'s AX list of ", windows->size());
        return;
    }
    WindowElement::bringForward(*window);
    Log::debug("raise: raised window ", windowID, " of pid ", pid);
}

}

void WindowIndex::raise(std::uint32_t windowID, pid_t pid)
{
    perDesktop<State>().queue->async([windowID, pid, start = Timing::now()] {
        raiseOnce(windowID, pid);
        Timing::since(start, "window raise");
    });
}
