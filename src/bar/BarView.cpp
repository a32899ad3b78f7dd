#include "bar/BarView.h"

#include "bar/BarPainter.h"
#include "bar/BarWindow.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "controls/Trash.h"
#include "look/Palette.h"
#include "model/Items.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"

#include <algorithm>
#include <functional>
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
    , searchField_(std::make_shared<BarSearchField>(CGRect {}))
    , resultsPanel_(std::make_unique<SearchResultsPanel>())
    , tooltip_(std::make_unique<TooltipPanel>())
    , preview_(std::make_unique<PreviewPanel>())
{
    setUpSearchField();
}

BarView::~BarView()
{
    searchField_->setDelegate(nullptr);
    cancelTooltip();
}

void BarView::closePanels()
{
    cancelTooltip();
    const auto* bar = dynamic_cast<BarWindow*>(window());
    if (resultsPanel_->isVisible() || (bar && bar->wantsKey))
        endSearch();
}

void BarView::setItems(std::vector<BarItem> items)
{
    items_ = std::move(items);
    setNeedsDisplay();
}

std::vector<BarItem> BarView::appItems() const
{
    std::vector<BarItem> items;
    std::remove_copy_if(items_.begin(), items_.end(), std::back_inserter(items), std::mem_fn(&BarItem::isLauncher));
    return items;
}

std::optional<BarItem> BarView::launcherItem() const
{
    const auto launcher = std::find_if(items_.begin(), items_.end(), std::mem_fn(&BarItem::isLauncher));
    if (launcher == items_.end())
        return std::nullopt;
    return *launcher;
}

BarLayout BarView::layout() const
{
    const auto launchers = std::count_if(items_.begin(), items_.end(), std::mem_fn(&BarItem::isLauncher));
    return BarLayout::current(bounds().size(), static_cast<int>(std::ssize(items_) - launchers));
}

std::vector<BarItem> BarView::displayItems(const BarLayout& bar, const std::optional<Drag>& drag) const
{
    std::vector<BarItem> items = appItems();
    if (!drag || !isValidIndex(drag->origin, items))
        return items;
    const int remaining = static_cast<int>(std::ssize(items)) - 1;
    return moved(std::move(items), drag->origin, bar.insertionIndex(remaining, drag->pointX));
}

std::vector<BarView::LayoutItem> BarView::layoutItems(const std::optional<Drag>& drag) const
{
    const BarLayout bar = layout();
    std::vector<LayoutItem> placed;
    for (BarItem& item : displayItems(bar, drag)) {
        const int index = static_cast<int>(placed.size());
        placed.push_back({ index, std::move(item), bar.buttonRect(index) });
    }
    return placed;
}

int BarView::insertionIndex(int count) const
{
    return layout().insertionIndex(count, dragPointX_.value_or(0));
}

int BarView::layoutCountDuringDrag(int from, double pointX) const
{
    return static_cast<int>(layoutItems(Drag { from, pointX }).size());
}

void BarView::applySearchFieldStyle()
{
    const BarLayout bar = layout();
    searchField_->setFont(NSFont::systemFont(bar.metrics().searchFont()));
    searchField_->setFrame(bar.searchFieldRect());
    searchField_->setPlaceholder("Spotlight Search", Palette::placeholder);
    searchField_->setHidden(!bar.shows(BarComponent::search));
}

void BarView::relayout()
{
    applySearchFieldStyle();
    setNeedsDisplay();
}

void BarView::resizeSubviews(CGSize oldSize)
{
    NSView::resizeSubviews(oldSize);
    searchField_->setFrame(searchFieldRect());
}

void BarView::draw(const CGRect&)
{
    const BarPicture now = picture();
    BarPainter(now).draw();
}

BarPicture BarView::picture() const
{
    const BarLayout bar = layout();
    return {
        .layout = bar,
        .look = BarLook::current(),
        .launcher = launcherItem(),
        .finder = bar.shows(BarComponent::finder) ? DockModel::finderItem() : std::nullopt,
        .buttons = displayItems(bar, drag()),
        .hovered = hoveredIndex_,
        .drag = dragPicture(bar),
        .isSearchFocused = isSearchFocused_,
        .isShowingDesktop = ShowDesktop::isShowingDesktop(),
        .isTrashEmpty = !bar.shows(BarComponent::trash) || Trash::isEmpty(),
    };
}

std::optional<BarDrag> BarView::dragPicture(const BarLayout& bar) const
{
    const auto moving = drag();
    if (!moving)
        return std::nullopt;
    const std::vector<BarItem> items = appItems();
    const int remaining = static_cast<int>(std::ssize(items)) - 1;
    return BarDrag {
        .landing = bar.insertionIndex(remaining, moving->pointX),
        .pointX = moving->pointX,
        .icon
        = isValidIndex(moving->origin, items) ? items[static_cast<std::size_t>(moving->origin)].icon : std::nullopt,
    };
}
