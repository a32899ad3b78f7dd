#include "bar/BarView.h"

#include "appkit/NSApplication.h"
#include "bar/BarWindow.h"
#include "look/Palette.h"
#include "search/Search.h"

void BarView::setUpSearchField()
{
    searchField_->setDelegate(this);
    searchField_->setTextColor(NSColor::white());
    applySearchFieldStyle();
    addSubview(searchField_);
}

void BarView::controlTextDidBeginEditing()
{
    setSearchFocused(true);
}

void BarView::controlTextDidEndEditing()
{
    setSearchFocused(false);
}

void BarView::controlTextDidChange()
{
    updateResults();
}

bool BarView::doCommand(NSTextCommand command)
{
    switch (command) {
    case NSTextCommand::moveDown:
        resultsPanel_->moveSelection(1);
        return true;
    case NSTextCommand::moveUp:
        resultsPanel_->moveSelection(-1);
        return true;
    case NSTextCommand::insertNewline:
        resultsPanel_->pickSelected();
        return true;
    case NSTextCommand::cancelOperation:
        endSearch();
        return true;
    }
    return false;
}

void BarView::updateResults()
{
    std::vector<SearchHit> hits = Search::hits(searchField_->stringValue());
    if (hits.empty() || !window()) {
        resultsPanel_->hide();
        return;
    }
    const CGRect box = window()->convertToScreen(convertToWindow(rect(BarComponent::search)));
    // The panel is the view's own and calls nothing once the view is gone.
    resultsPanel_->show(std::move(hits), box, [this] { endSearch(); });
}

void BarView::endSearch()
{
    setSearchFocused(false);
    searchField_->setStringValue("");
    resultsPanel_->hide();
    if (auto* bar = dynamic_cast<BarWindow*>(window()))
        bar->wantsKey = false;
    if (window())
        window()->makeFirstResponder(nullptr);
    NSApplication::deactivate();
}

void BarView::setSearchFocused(bool focused)
{
    isSearchFocused_ = focused;
    setNeedsDisplay();
}
