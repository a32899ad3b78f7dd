#include "model/ItemCommands.h"

#include "appkit/NSWorkspace.h"
#include "log/Log.h"
#include "system/Attribute.h"
#include "system/WindowElement.h"

namespace {

/// In seconds. The caller waits on the main thread, for a menu.
constexpr double listTimeout = 1.0;

}

namespace DockModel {

std::vector<ListedElement> windowList(const BarItem& item)
{
    if (!item.pid)
        return {};
    const AXUIElement application = Attribute::application(*item.pid, listTimeout);
    AXUIElementSetAttributeValue(application, "AXManualAccessibility", true);
    const auto windows = Attribute::elements(application, "AXWindows");
    if (!windows)
        return {};

    std::vector<ListedElement> list;
    for (const AXUIElement& window : *windows)
        if (auto title = Attribute::text(window, "AXTitle"); title && !title->empty())
            list.push_back({ std::move(*title), window });
    return list;
}

void raise(const AXUIElement& window, pid_t pid)
{
    AXUIElementSetAttributeValue(AXUIElementCreateApplication(pid), "AXFrontmost", true);
    WindowElement::bringForward(window);
}

void newWindow(const BarItem& item)
{
    if (item.bundleURL)
        NSWorkspace::sharedWorkspace().openApplicationAtURL(
            *item.bundleURL, { .activates = true, .createsNewApplicationInstance = true });
}

void setHidden(const BarItem& item, bool hidden)
{
    const auto application = runningApplication(item);
    if (!application)
        return;
    if (hidden)
        application->hide();
    else
        application->unhide();
}

bool isHidden(const BarItem& item)
{
    const auto application = runningApplication(item);
    return application && application->isHidden();
}

void quit(const BarItem& item)
{
    if (const auto application = runningApplication(item)) {
        Log::debug("quit: ", item.name);
        application->terminate();
    }
}

void forceQuit(const BarItem& item)
{
    if (const auto application = runningApplication(item)) {
        Log::debug("force quit: ", item.name);
        application->forceTerminate();
    }
}

}
