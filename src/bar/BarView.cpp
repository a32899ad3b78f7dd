#include "bar/BarView.h"

#include "bar/BarElements.h"
#include "bar/BarMenus.h"
#include "bar/BarPainter.h"
#include "controls/Trash.h"
#include "log/Log.h"
#include "log/Timing.h"
#include "model/Click.h"
#include "model/ItemCommands.h"
#include "model/Items.h"
#include "search/NativeLauncher.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

bool isValidIndex(int index, const std::vector<BarItem>& items)
{
    return index >= 0 && index < std::ssize(items);
}

/// The items with the one at `from` taken out and put back so that it stands at `to`.
std::vector<BarItem> moved(std::vector<BarItem> items, int from, int to)
{
    const auto origin = items.begin() + from;
    if (from < to)
        std::rotate(origin, origin + 1, items.begin() + to + 1);
    else
        std::rotate(items.begin() + to, origin, origin + 1);
    return items;
}

}

BarView::BarView(const CGRect& frame)
    : NSView(frame)
    , picture_(BarPicture::current(frame.size(), {}))
    , search_([this] { showState(); })
    , hover_(*this, picture_, [this] { showState(); })
{
    applySearchFieldStyle();
    addSubview(search_.field());
    registerForDraggedTypes();
}

void BarView::closePanels()
{
    letGoOfPointer();
    search_.close();
}

void BarView::setItems(std::vector<BarItem> items)
{
    items_ = std::move(items);
    gather();
}

void BarView::relayout()
{
    const BarLayout before = layout();
    gather();
    if (layout() != before)
        letGoOfPointer();
    applySearchFieldStyle();
}

void BarView::resizeSubviews(CGSize oldSize)
{
    NSView::resizeSubviews(oldSize);
    relayout();
}

/// Asks the system and the settings, once, for all that painting needs.
void BarView::gather()
{
    const BarLayout before = std::exchange(picture_, BarPicture::current(bounds().size(), items_)).layout;
    if (layout() != before)
        applySearchFieldStyle();
    if (press_)
        showDrag();
    else
        showState();
}

/// Takes what changes between two gatherings into the picture.
void BarView::showState()
{
    picture_.hovered = hover_.hit();
    picture_.isSearchFocused = search_.isFocused();
    picture_.isShowingDesktop = ShowDesktop::isShowingDesktop();
    setNeedsDisplay();
}

/// The same when the press has changed, and with it perhaps the order of the buttons.
void BarView::showDrag()
{
    picture_.buttons = arranged(press_);
    picture_.drag = drag();
    showState();
}

std::vector<NSAccessibilityElement> BarView::accessibilityChildren()
{
    return BarElements::of(picture_, [this](int hit) { return action(hit); });
}

void BarView::draw(const CGRect&)
{
    BarPainter(picture_).draw();
}

std::vector<BarItem> BarView::arranged(const std::optional<BarPress>& press) const
{
    std::vector<BarItem> items = appItems();
    if (!press || !press->isDrag() || !isValidIndex(*press->button, items))
        return items;
    const int remaining = static_cast<int>(std::ssize(items)) - 1;
    return moved(std::move(items), *press->button, layout().insertionIndex(remaining, *press->dragX));
}

std::optional<BarDrag> BarView::drag() const
{
    if (!press_ || !press_->isDrag())
        return std::nullopt;
    const std::vector<BarItem> items = appItems();
    const int origin = *press_->button;
    return BarDrag {
        .landing = insertionIndex(static_cast<int>(std::ssize(items)) - 1),
        .pointX = *press_->dragX,
        .icon = isValidIndex(origin, items) ? items[static_cast<std::size_t>(origin)].icon : std::nullopt,
    };
}

std::vector<BarView::LayoutItem> BarView::layoutItems() const
{
    std::vector<LayoutItem> placed;
    for (const BarItem& item : displayItems()) {
        const int index = static_cast<int>(placed.size());
        placed.push_back({ index, item, layout().buttonRect(index) });
    }
    return placed;
}

int BarView::insertionIndex(int count) const
{
    return layout().insertionIndex(count, press_ ? press_->dragX.value_or(0) : 0);
}

int BarView::layoutCountDuringDrag(int from, double pointX) const
{
    return static_cast<int>(arranged(BarPress { {}, from, pointX }).size());
}

void BarView::updateTrackingAreas()
{
    removeTrackingAreas();
    constexpr unsigned options = NSTrackingArea::mouseEnteredAndExited | NSTrackingArea::mouseMoved
        | NSTrackingArea::cursorUpdate | NSTrackingArea::activeAlways | NSTrackingArea::inVisibleRect;
    addTrackingArea({ options });
}

void BarView::mouseMoved(const NSEvent& event)
{
    updateHover(convertFromWindow(event.locationInWindow));
}

void BarView::mouseExited(const NSEvent&)
{
    pointerLeftBar(NSEvent::mouseLocation());
}

bool BarView::isText(CGPoint point) const
{
    return layout().shows(BarComponent::search) && CGRectContainsPoint(searchFieldRect(), point);
}

void BarView::resetCursorRects()
{
    addCursorRect(bounds(), NSCursor::arrow());
    if (layout().shows(BarComponent::search))
        addCursorRect(searchFieldRect(), NSCursor::iBeam());
}

void BarView::cursorUpdate(const NSEvent& event)
{
    setCursor(convertFromWindow(event.locationInWindow));
}

void BarView::setCursor(CGPoint point) const
{
    (isText(point) ? NSCursor::iBeam() : NSCursor::arrow()).set();
}

void BarView::applyCursor(CGPoint forScreenPoint, const CGRect& windowFrame)
{
    const CGPoint point { forScreenPoint.x - windowFrame.x, forScreenPoint.y - windowFrame.y };
    setCursor(point);
    updateHover(point);
}

void BarView::letGoOfPointer()
{
    endPress();
    hover_.setHit(std::nullopt);
    cancelTooltip();
}

/// A quick pointer may press where no movement has told of it.
void BarView::mouseDown(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    updateHover(point);
    press_ = BarPress { point, layout().button(point) };
}

void BarView::mouseDragged(const NSEvent& event)
{
    if (!press_)
        return;
    const bool wasDrag = press_->isDrag();
    press_->moveTo(convertFromWindow(event.locationInWindow).x);
    if (!press_->isDrag())
        return;
    if (!wasDrag)
        cancelTooltip();
    showDrag();
}

void BarView::mouseUp(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    updateHover(point);
    cancelTooltip();
    // One that has ended before its release means nothing any more.
    if (!press_)
        return;
    // A quick pointer may also release where no movement has told of it.
    press_->moveTo(point.x);
    const bool wasDrag = press_->isDrag();
    if (wasDrag) {
        showDrag();
        commitDrag();
    }
    endPress();
    if (!wasDrag)
        click(point);
}

void BarView::rightMouseUp(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    updateHover(point);
    cancelTooltip();
    endPress();
    const CGRect launcher = rect(BarComponent::launcher);
    if (CGRectContainsPoint(launcher, point)) {
        NSMenu::popUpMenuPositioningItem(
            BarMenus::launcherMenu(), nullptr, { launcher.minX(), bounds().maxY() }, *this);
        return;
    }
    const auto button = layout().button(point);
    const auto menu
        = button ? BarMenus::itemMenu(displayItems()[static_cast<std::size_t>(*button)]) : BarMenus::barMenu();
    NSMenu::popUpContextMenu(menu, event, *this);
}

/// A middle click opens a new window.
void BarView::otherMouseUp(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    cancelTooltip();
    if (const auto button = layout().button(point))
        DockModel::newWindow(displayItems()[static_cast<std::size_t>(*button)]);
    else if (layout().hit(point) == BarHit::finder && picture_.finder)
        DockModel::newWindow(*picture_.finder);
}

NSDragOperation BarView::draggingUpdated(const NSDraggingInfo& dragged)
{
    return drop_.moveTo(layout().hit(convertFromWindow(dragged.draggingLocation)), dragged);
}

bool BarView::performDragOperation(const NSDraggingInfo& dragged)
{
    draggingUpdated(dragged);
    const bool isDone = drop_.drop(dragged);
    gather();
    return isDone;
}

void BarView::endPress()
{
    if (std::exchange(press_, std::nullopt))
        showDrag();
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
    const auto hit = layout().hit(point);
    // The box around the search text is no button for the pointer: the text itself is what one presses into.
    auto act = hit && *hit != BarHit::search ? action(*hit) : nullptr;
    if (const auto behind = layout().button(point); !act && behind)
        act = action(*behind);
    if (act)
        act();
}

/// What a click does there, as things are now; empty for a Finder that doesn't run. `hit` is a `BarHit` value.
std::function<void()> BarView::action(int hit)
{
    switch (hit) {
    case BarHit::launcher:
        return [this] { clickLauncher(); };
    case BarHit::search:
        return [this] { search_.field()->becomeFirstResponder(); };
    case BarHit::showDesktop:
        return [this] { clickShowDesktop(); };
    case BarHit::finder:
        if (const auto finder = DockModel::finderItem())
            return [item = *finder] { DockModel::handleClick(item); };
        return nullptr;
    case BarHit::trash:
        return [] { Trash::open(); };
    default:
        return [item = displayItems()[static_cast<std::size_t>(hit)]] {
            Timing::measure("click: main thread", [&] { DockModel::handleClick(item); });
        };
    }
}

void BarView::clickShowDesktop()
{
    ShowDesktop::forgetIfStale();
    ShowDesktop::toggle();
    showState();
}

void BarView::clickLauncher()
{
    if (const auto& launcher = launcherItem())
        DockModel::activate(*launcher);
    else
        NativeLauncher::openSpotlight();
}
