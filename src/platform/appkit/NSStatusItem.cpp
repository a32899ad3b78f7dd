#include "appkit/NSStatusItem.h"

#include "appkit/ImageCache.h"
#include "appkit/MenuWindow.h"
#include "appkit/NSMenu.h"
#include "base/RunLoop.h"
#include "host/Desktop.h"
#include "host/StatusItems.h"

#include <QImage>
#include <QPixmap>
#include <QRect>

#include <algorithm>
#include <iterator>

namespace {

std::vector<host::StatusEntry> entries(const std::shared_ptr<const NSMenu>& menu)
{
    std::vector<host::StatusEntry> entries;
    std::ranges::transform(menu->itemArray(), std::back_inserter(entries), [&](const NSMenuItem& item) {
        return host::StatusEntry { item.title(), item.toolTip(), MenuWindow::keys(item), item.isEnabled(),
            [menu, &item] { RunLoop::main().perform([menu, &item] { item.perform(); }); } };
    });
    return entries;
}

}

NSStatusItem::NSStatusItem(std::unique_ptr<host::StatusItem> item)
    : item_(std::move(item))
{
}

NSStatusItem::~NSStatusItem() = default;

void NSStatusItem::setImage(std::optional<NSImage> image)
{
    image_ = std::move(image);
    update();
}

void NSStatusItem::setMenu(std::shared_ptr<const NSMenu> menu)
{
    menu_ = std::move(menu);
    update();
}

std::optional<CGRect> NSStatusItem::buttonFrame() const
{
    return item_ ? item_->frame() : std::nullopt;
}

void NSStatusItem::update()
{
    if (!item_)
        return;
    host::StatusItemFacts facts;
    if (image_) {
        facts.description = image_->accessibilityDescription();
        facts.shape = [image = *image_](int side) { return ImageCache::pixmap(image, { side, side }).toImage(); };
    }
    if (menu_) {
        facts.entries = entries(menu_);
        facts.onPress
            = [menu = menu_](const QRect& item, const QRect& room) { MenuWindow::openBeside(menu, item, room); };
    }
    item_->update(std::move(facts));
}

NSStatusBar& NSStatusBar::systemStatusBar()
{
    static NSStatusBar bar;
    return bar;
}

std::shared_ptr<NSStatusItem> NSStatusBar::statusItem(double)
{
    return std::shared_ptr<NSStatusItem>(new NSStatusItem(host::Desktop::current().statusItems().add()));
}

void NSStatusBar::removeStatusItem(const std::shared_ptr<NSStatusItem>& item)
{
    item->item_.reset();
}
