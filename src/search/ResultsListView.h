#pragma once

#include "appkit/NSView.h"
#include "search/Search.h"

#include <functional>
#include <vector>

/// The rows of found things, one of them highlighted. Origin at the top left. Main thread.
class ResultsListView final : public NSView {
public:
    static constexpr double rowHeight = 40;
    /// Above the first row and below the last.
    static constexpr double margin = 4;

    explicit ResultsListView(const CGRect& frame)
        : NSView(frame)
    {
    }

    const std::vector<SearchHit>& results() const { return results_; }
    void setResults(std::vector<SearchHit> results);
    int selectedIndex() const { return selectedIndex_; }
    void setSelectedIndex(int index);

    /// Goes round at both ends.
    void moveSelection(int by);
    void pickSelected();
    /// Called for a chosen row; it may change the rows.
    std::function<void(const SearchHit&)> onPick;

    bool isFlipped() const override { return true; }
    bool acceptsFirstMouse() const override { return true; }
    void mouseUp(const NSEvent& event) override;
    void draw(const CGRect& dirty) override;
    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::list; }
    std::vector<NSAccessibilityElement> accessibilityChildren() override;

private:
    CGRect rowRect(int index) const { return { 0, index * rowHeight + margin, bounds().width, rowHeight }; }
    void drawRow(int index) const;
    void pick(int index);
    void pick(const SearchHit& hit);

    std::vector<SearchHit> results_;
    int selectedIndex_ = 0;
};
