#include "appkit/NSMenu.h"

#include "appkit/MenuWindow.h"
#include "appkit/NSEvent.h"
#include "appkit/NSView.h"

#include <utility>

NSMenuItem::NSMenuItem(std::string title, Action action, std::string keyEquivalent)
    : title_(std::move(title))
    , action_(std::move(action))
    , keyEquivalent_(std::move(keyEquivalent))
{
}

NSMenuItem NSMenuItem::separatorItem()
{
    NSMenuItem item({}, {}, {});
    item.isSeparator_ = true;
    return item;
}

void NSMenuItem::perform() const
{
    if (isEnabled() && action_)
        action_(*this);
}

NSMenuItem& NSMenu::addItem(NSMenuItem item)
{
    return items_.emplace_back(std::move(item));
}

NSMenuItem& NSMenu::addItem(std::string title, NSMenuItem::Action action, std::string keyEquivalent)
{
    return addItem(NSMenuItem(std::move(title), std::move(action), std::move(keyEquivalent)));
}

void NSMenu::popUpMenuPositioningItem(
    const std::shared_ptr<const NSMenu>& menu, const NSMenuItem*, CGPoint location, const NSView& view)
{
    MenuWindow::open(menu, view, view.convertToWindow(location));
}

void NSMenu::popUpContextMenu(const std::shared_ptr<const NSMenu>& menu, const NSEvent& event, const NSView& view)
{
    MenuWindow::open(menu, view, event.locationInWindow);
}

std::shared_ptr<const NSMenu> NSMenu::open()
{
    return MenuWindow::current();
}

void NSMenu::cancelTracking()
{
    MenuWindow::close();
}
