#pragma once

#include "look/FloatingPanel.h"
#include "search/ResultsListView.h"

#include <functional>
#include <memory>
#include <vector>

/// The panel of found things that opens against the search box. It never takes the keyboard: keys come through the
/// field. Main thread.
class SearchResultsPanel final : public FloatingPanel {
public:
    SearchResultsPanel();

    /// `box` is the search box in screen space; the panel touches it on the side toward the desktop. `onPick` runs
    /// after the action of a chosen row. An empty list takes the panel away.
    void show(std::vector<SearchHit> results, const CGRect& box, std::function<void()> onPick);
    /// With no row left to choose.
    void hide();
    void moveSelection(int by) { listView_->moveSelection(by); }
    void pickSelected() { listView_->pickSelected(); }

    const std::shared_ptr<ResultsListView>& listView() const { return listView_; }

private:
    void carryOut(const SearchHit& hit);

    std::shared_ptr<ResultsListView> listView_;
    std::function<void()> onPick_;
};
