#include "bar/BarSearch.h"

#include "appkit/NSApplication.h"
#include "bar/BarWindow.h"
#include "look/Palette.h"
#include "search/Search.h"

#include <utility>

BarSearch::BarSearch(std::function<void()> onFocus)
    : onFocus_(std::move(onFocus))
    , field_(std::make_shared<BarSearchField>(CGRect {}))
{
    field_->setDelegate(this);
    field_->setTextColor(NSColor::white());
    field_->setPlaceholder("Spotlight Search", Palette::placeholder);
}

void BarSearch::fit(const BarLayout& bar)
{
    box_ = bar.rect(BarComponent::search);
    field_->setFont(NSFont::systemFont(bar.metrics().searchFont()));
    field_->setFrame(bar.searchFieldRect());
    field_->setHidden(!bar.shows(BarComponent::search));
    if (field_->isHidden())
        close();
    else if (results_.isVisible())
        update();
}

void BarSearch::update()
{
    std::vector<SearchHit> hits = Search::hits(field_->stringValue());
    const NSPanel* window = field_->window();
    if (hits.empty() || !window) {
        results_.hide();
        return;
    }
    const CGRect box = window->convertToScreen(field_->superview()->convertToWindow(box_));
    // The panel is a part of the search and calls nothing once that is gone.
    results_.show(std::move(hits), box, [this] { end(); });
}

void BarSearch::end()
{
    setFocused(false);
    field_->setStringValue("");
    results_.hide();
    NSPanel* window = field_->window();
    if (auto* bar = dynamic_cast<BarWindow*>(window))
        bar->wantsKey = false;
    if (window)
        window->makeFirstResponder(nullptr);
    NSApplication::deactivate();
}

void BarSearch::close()
{
    const auto* bar = dynamic_cast<BarWindow*>(field_->window());
    if (results_.isVisible() || (bar && bar->wantsKey))
        end();
}

void BarSearch::setFocused(bool focused)
{
    if (std::exchange(isFocused_, focused) != focused)
        onFocus_();
}

bool BarSearch::doCommand(NSTextCommand command)
{
    switch (command) {
    case NSTextCommand::moveDown:
        results_.moveSelection(1);
        return true;
    case NSTextCommand::moveUp:
        results_.moveSelection(-1);
        return true;
    case NSTextCommand::insertNewline:
        results_.pickSelected();
        return true;
    case NSTextCommand::cancelOperation:
        end();
        return true;
    }
    return false;
}
