#include "search/SearchResultsPanel.h"

#include "settings/Settings.h"

namespace {

constexpr double width = 320;

}

SearchResultsPanel::SearchResultsPanel()
    : FloatingPanel({ width, 10 }, kCGScreenSaverWindowLevelKey)
    , listView_(std::make_shared<ResultsListView>(CGRect { 0, 0, width, 10 }))
{
    setRole(NSPanelRole::results);
    setContentView(listView_);
    listView_->onPick = [this](const SearchHit& hit) { carryOut(hit); };
}

void SearchResultsPanel::show(std::vector<SearchHit> results, const CGRect& box, std::function<void()> onPick)
{
    if (results.empty())
        return hide();
    const double height
        = static_cast<double>(results.size()) * ResultsListView::rowHeight + 2 * ResultsListView::margin;
    const double y = isTop(Settings::barEdge()) ? box.minY() - height : box.maxY();
    onPick_ = std::move(onPick);
    listView_->setResults(std::move(results));
    listView_->setSelectedIndex(0);
    setFrame({ box.minX(), y, width, height }, true);
    orderFrontRegardless();
}

void SearchResultsPanel::hide()
{
    listView_->setResults({});
    orderOut();
}

/// The action comes first, while the search is still on.
void SearchResultsPanel::carryOut(const SearchHit& hit)
{
    hit.activate();
    if (onPick_)
        onPick_();
    orderOut();
}
