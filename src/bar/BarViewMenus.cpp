#include "bar/BarMenus.h"
#include "bar/BarView.h"

void BarView::rightMouseUp(const NSEvent& event)
{
    cancelTooltip();
    const CGPoint point = convertFromWindow(event.locationInWindow);
    const BarLayout bar = layout();
    const CGRect& launcher = bar.rect(BarComponent::launcher);
    if (CGRectContainsPoint(launcher, point)) {
        NSMenu::popUpMenuPositioningItem(
            BarMenus::launcherMenu(), nullptr, { launcher.minX(), bounds().maxY() }, *this);
        return;
    }
    const auto button = bar.button(point);
    const auto menu
        = button ? BarMenus::itemMenu(displayItems()[static_cast<std::size_t>(*button)]) : BarMenus::barMenu();
    NSMenu::popUpContextMenu(menu, event, *this);
}
