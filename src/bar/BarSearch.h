#pragma once

#include "bar/BarLayout.h"
#include "bar/BarSearchField.h"
#include "search/SearchResultsPanel.h"

#include <functional>
#include <memory>

/// Searching from a bar: the field in the search box, what it finds, and the keyboard while that lasts. Main thread.
class BarSearch final : private NSTextFieldDelegate {
public:
    /// `onFocus`: the field has got the keyboard, or has it no more.
    explicit BarSearch(std::function<void()> onFocus);
    ~BarSearch() override { field_->setDelegate(nullptr); }
    BarSearch(const BarSearch&) = delete;
    BarSearch& operator=(const BarSearch&) = delete;

    const std::shared_ptr<BarSearchField>& field() const { return field_; }
    const SearchResultsPanel& results() const { return results_; }
    bool isFocused() const { return isFocused_; }

    /// Puts field and results where the search box is. Without a box there is no search.
    void fit(const BarLayout& bar);
    /// Shows what the field's text finds, as of now.
    void update();
    /// Empties the field and gives the keyboard back.
    void end();
    /// Ends what has begun, if anything has.
    void close();

private:
    void setFocused(bool focused);
    void controlTextDidBeginEditing() override { setFocused(true); }
    void controlTextDidChange() override { update(); }
    void controlTextDidEndEditing() override { setFocused(false); }
    bool doCommand(NSTextCommand command) override;

    std::function<void()> onFocus_;
    std::shared_ptr<BarSearchField> field_;
    SearchResultsPanel results_;
    bool isFocused_ = false;
    /// The bar's coordinates.
    CGRect box_;
};
