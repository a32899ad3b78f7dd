#include "bar/BarView.h"

#include "controls/Trash.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "model/Click.h"
#include "model/Items.h"
#include "search/NativeLauncher.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"

#include <cmath>

namespace {

/// How far the pointer must move sideways, in points, for a press to become a drag.
constexpr double dragThreshold = 5.0;

}

void BarView::mouseDown(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    dragStartPoint_ = point;
    dragOriginIndex_ = layout().button(point);
    dragPointX_.reset();
}

void BarView::mouseDragged(const NSEvent& event)
{
    if (!dragStartPoint_ || !dragOriginIndex_)
        return;
    const double x = convertFromWindow(event.locationInWindow).x;
    if (!isDragging() && std::abs(x - dragStartPoint_->x) <= dragThreshold)
        return;
    if (!isDragging())
        cancelTooltip();
    dragPointX_ = x;
    setNeedsDisplay();
}

void BarView::mouseUp(const NSEvent& event)
{
    cancelTooltip();
    if (isDragging()) {
        commitDrag();
        endPress();
        setNeedsDisplay();
        return;
    }
    endPress();
    click(convertFromWindow(event.locationInWindow));
}

std::optional<BarView::Drag> BarView::drag() const
{
    if (!dragOriginIndex_ || !dragPointX_)
        return std::nullopt;
    return Drag { *dragOriginIndex_, *dragPointX_ };
}

void BarView::endPress()
{
    dragStartPoint_.reset();
    dragOriginIndex_.reset();
    dragPointX_.reset();
}

void BarView::commitDrag()
{
    std::vector<std::string> keys;
    for (const BarItem& item : displayItems())
        keys.push_back(DockModel::key(item));
    Settings::manualOrder.set(keys);
    if (Settings::appOrder() != AppOrder::manual)
        Settings::appOrder.set(AppOrder::manual);
    Log::debug("reorder: saved ", keys.size(), " items");
}

void BarView::click(CGPoint point)
{
    const BarLayout bar = layout();
    const auto isOn = [&](BarComponent component) { return CGRectContainsPoint(bar.rect(component), point); };

    if (isOn(BarComponent::showDesktop))
        return clickShowDesktop();
    if (isOn(BarComponent::finder))
        if (const auto finder = DockModel::finderItem())
            return DockModel::handleClick(*finder);
    if (isOn(BarComponent::trash))
        return Trash::open();
    if (isOn(BarComponent::launcher))
        return clickLauncher();
    if (const auto position = bar.button(point)) {
        const BarItem item = appItems()[static_cast<std::size_t>(*position)];
        Timing::measure("click: main thread", [&] { DockModel::handleClick(item); });
    }
}

void BarView::clickShowDesktop()
{
    ShowDesktop::forgetIfStale();
    ShowDesktop::toggle();
    setNeedsDisplay();
}

void BarView::clickLauncher()
{
    if (const auto launcher = launcherItem())
        DockModel::activate(*launcher);
    else
        NativeLauncher::openSpotlight();
}
