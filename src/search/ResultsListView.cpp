#include "search/ResultsListView.h"

#include "appkit/NSGraphicsContext.h"
#include "appkit/ShortenedText.h"

#include <cmath>
#include <iterator>

namespace {

constexpr double iconInset = 9;
constexpr double iconTop = 8;
constexpr double iconSide = 24;
constexpr double textX = 42;
/// What is kept free of the title, on both sides together.
constexpr double titleMargins = 52;
/// So many characters of a title are kept, however narrow the list.
constexpr std::size_t leastTitle = 4;

}

void ResultsListView::setResults(std::vector<SearchHit> results)
{
    results_ = std::move(results);
    setNeedsDisplay();
}

void ResultsListView::setSelectedIndex(int index)
{
    selectedIndex_ = index;
    setNeedsDisplay();
}

void ResultsListView::moveSelection(int by)
{
    const int count = static_cast<int>(std::ssize(results_));
    if (count > 0)
        setSelectedIndex((selectedIndex_ + by + count) % count);
}

void ResultsListView::pickSelected()
{
    pick(selectedIndex_);
}

void ResultsListView::mouseUp(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    pick(static_cast<int>(std::trunc((point.y - margin) / rowHeight)));
}

void ResultsListView::pick(int index)
{
    // What is called may replace the rows.
    if (index >= 0 && index < std::ssize(results_))
        pick(SearchHit(results_[static_cast<std::size_t>(index)]));
}

void ResultsListView::pick(const SearchHit& hit)
{
    if (const auto call = onPick)
        call(hit);
}

std::vector<NSAccessibilityElement> ResultsListView::accessibilityChildren()
{
    std::vector<NSAccessibilityElement> rows;
    for (const SearchHit& hit : results_) {
        const int index = static_cast<int>(rows.size());
        rows.push_back({
            .identifier = hit.subtitle + '/' + hit.title,
            .role = NSAccessibilityRole::row,
            .label = hit.title,
            .help = hit.subtitle,
            .isSelected = index == selectedIndex_,
            .frame = rowRect(index),
            .press = [this, hit] { pick(hit); },
        });
    }
    return rows;
}

void ResultsListView::draw(const CGRect&)
{
    NSColor::colorWithCalibratedWhite(0.15, 0.98).set();
    NSRectFillUsingOperation(bounds(), NSCompositingOperation::sourceOver);
    for (int index = 0; index < std::ssize(results_); ++index)
        drawRow(index);
}

void ResultsListView::drawRow(int index) const
{
    const SearchHit& hit = results_[static_cast<std::size_t>(index)];
    const CGRect row = rowRect(index);
    if (index == selectedIndex_) {
        NSColor::controlAccentColor().withAlphaComponent(0.85).set();
        NSRectFillUsingOperation(row, NSCompositingOperation::sourceOver);
    }
    hit.icon.drawInRect({ iconInset, row.minY() + iconTop, iconSide, iconSide });

    const NSFont titleFont = NSFont::systemFont(13);
    const std::string title = shortenedText(hit.title, titleFont, bounds().width - titleMargins, leastTitle);
    drawAtPoint(title, { textX, row.midY() + 1 }, titleFont, NSColor::white());
    drawAtPoint(
        hit.subtitle, { textX, row.midY() - 13 }, NSFont::systemFont(10), NSColor::white().withAlphaComponent(0.65));
}
