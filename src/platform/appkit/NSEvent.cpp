#include "appkit/NSEvent.h"

#include "base/PerDesktop.h"
#include "host/Desktop.h"
#include "host/Pointer.h"

#include <QApplication>

#include <algorithm>
#include <vector>

namespace {

struct GlobalMonitor {
    unsigned long long mask;
    std::function<void()> handler;
};

auto& monitors()
{
    return perDesktop<std::vector<std::shared_ptr<const GlobalMonitor>>>();
}

void pointerMoved(bool buttonDown)
{
    if (QApplication::activePopupWidget())
        return;
    const auto wanted = buttonDown ? NSEvent::maskLeftMouseDragged : NSEvent::maskMouseMoved;
    const auto told = monitors();
    for (const auto& monitor : told)
        if (monitor->mask & wanted)
            monitor->handler();
}

}

std::optional<CGPoint> NSEvent::mouseLocation()
{
    return host::Desktop::current().pointer().location();
}

NSEvent::Monitor NSEvent::addGlobalMonitor(unsigned long long mask, std::function<void()> handler)
{
    host::Pointer& pointer = host::Desktop::current().pointer();
    pointer.onMove = pointerMoved;
    if (monitors().empty() && !pointer.watch(true))
        return nullptr;
    monitors().push_back(std::make_shared<const GlobalMonitor>(GlobalMonitor { mask, std::move(handler) }));
    return monitors().back();
}

void NSEvent::removeMonitor(const Monitor& monitor)
{
    std::erase(monitors(), monitor);
    if (monitors().empty())
        host::Desktop::current().pointer().watch(false);
}
