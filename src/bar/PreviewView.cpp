#include "bar/PreviewView.h"

#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/ShortenedText.h"
#include "bar/Preview.h"
#include "look/Appearance.h"
#include "look/Paint.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

// Plain points, the same at every size of the bar.
constexpr CGSize cardSize { 176, 130 };
constexpr double spacing = 8;
constexpr double margin = 10;
constexpr double thumbnailHeight = 104;
constexpr double panelRadius = 12;
constexpr double thumbnailRadius = 6;
constexpr double highlightOutset = 5;
constexpr double highlightRadius = 9;
constexpr double labelGap = 7;
constexpr double labelRoom = cardSize.width - 4;
/// So many characters of a label are kept, however wide.
constexpr std::size_t leastLabel = 2;

const NSFont labelFont = NSFont::systemFont(11, NSFontWeight::medium);
const NSFont placeholderFont = NSFont::systemFont(10);

NSColor white(double alpha)
{
    return NSColor::colorWithCalibratedWhite(1.0, alpha);
}

/// Centred in the box, large enough to fill it.
CGRect filling(const CGRect& box, CGSize image)
{
    const double factor = std::max(box.width / image.width, box.height / image.height);
    const CGSize size { image.width * factor, image.height * factor };
    return { box.midX() - size.width * 0.5, box.midY() - size.height * 0.5, size.width, size.height };
}

void drawPlaceholder(const CGRect& box)
{
    const char* text = Preview::isAvailable() ? "Loading…" : "Preview needs Screen Recording";
    const CGSize size = sizeWithAttributes(text, placeholderFont);
    drawAtPoint(text, { box.midX() - size.width * 0.5, box.midY() - size.height * 0.5 }, placeholderFont, white(0.45));
}

}

void PreviewView::setWindows(std::vector<WindowEntry> entries, std::string appName)
{
    entries_ = std::move(entries);
    appName_ = std::move(appName);
    hoveredCard_.reset();
    setNeedsDisplay();
}

CGSize PreviewView::fittingSize() const
{
    const auto count = static_cast<double>(std::max<std::size_t>(entries_.size(), 1));
    return { count * cardSize.width + (count - 1) * spacing + 2 * margin, height };
}

std::size_t PreviewView::capacity(double width)
{
    const double cards = std::floor((width - 2 * margin + spacing) / (cardSize.width + spacing));
    return static_cast<std::size_t>(std::max(1.0, cards));
}

CGRect PreviewView::cardRect(int index)
{
    return { margin + index * (cardSize.width + spacing), margin, cardSize.width, cardSize.height };
}

std::optional<int> PreviewView::card(CGPoint point, int count)
{
    for (int index = 0; index < count; ++index)
        if (CGRectContainsPoint(cardRect(index), point))
            return index;
    return std::nullopt;
}

std::optional<int> PreviewView::cardAt(CGPoint point) const
{
    return card(point, static_cast<int>(std::ssize(entries_)));
}

void PreviewView::hover(CGPoint point)
{
    setHoveredCard(cardAt(point));
    (hoveredCard_ ? NSCursor::pointingHand() : NSCursor::arrow()).set();
}

void PreviewView::setHoveredCard(std::optional<int> card)
{
    if (std::exchange(hoveredCard_, card) != card)
        setNeedsDisplay();
}

void PreviewView::updateTrackingAreas()
{
    removeTrackingAreas();
    addTrackingArea({ NSTrackingArea::mouseEnteredAndExited | NSTrackingArea::mouseMoved | NSTrackingArea::activeAlways
        | NSTrackingArea::inVisibleRect });
}

void PreviewView::mouseMoved(const NSEvent& event)
{
    holdsPointer_ = true;
    hover(convertFromWindow(event.locationInWindow));
}

void PreviewView::mouseExited(const NSEvent& event)
{
    holdsPointer_ = false;
    hover(convertFromWindow(event.locationInWindow));
    if (onExit)
        onExit();
}

void PreviewView::mouseDown(const NSEvent& event)
{
    pressedCard_ = cardAt(convertFromWindow(event.locationInWindow));
    setHoveredCard(pressedCard_);
}

void PreviewView::mouseUp(const NSEvent& event)
{
    const auto released = cardAt(convertFromWindow(event.locationInWindow));
    const auto pressed = std::exchange(pressedCard_, std::nullopt);
    if (released && released == pressed)
        pick(WindowEntry(entries_[static_cast<std::size_t>(*released)]));
}

void PreviewView::pick(const WindowEntry& entry)
{
    if (onPick)
        onPick(entry);
}

std::vector<NSAccessibilityElement> PreviewView::accessibilityChildren()
{
    std::vector<NSAccessibilityElement> cards;
    for (const WindowEntry& entry : entries_) {
        cards.push_back({
            .identifier = std::to_string(entry.id),
            .label = label(entry),
            .frame = cardRect(static_cast<int>(cards.size())),
            .press = [this, entry] { pick(entry); },
        });
    }
    return cards;
}

void PreviewView::draw(const CGRect&)
{
    const NSBezierPath plate = Paint::rounded(bounds(), panelRadius);
    Paint::fill(plate, NSColor::colorWithCalibratedWhite(0.13, 0.98));
    Paint::stroke(plate, white(0.14), 1.0);
    for (int index = 0; index < std::ssize(entries_); ++index)
        drawCard(entries_[static_cast<std::size_t>(index)], cardRect(index), hoveredCard_ == index);
}

void PreviewView::drawCard(const WindowEntry& entry, const CGRect& card, bool isHovered)
{
    if (isHovered)
        Paint::fill(
            Paint::rounded(CGRectInset(card, -highlightOutset, -highlightOutset), highlightRadius), white(0.12));

    const CGRect box { card.x, card.y, card.width, thumbnailHeight };
    const NSBezierPath frame = Paint::rounded(box, thumbnailRadius);
    Paint::fill(frame, white(isHovered ? 0.12 : 0.07));
    drawThumbnail(entry, box);
    if (isHovered)
        Paint::stroke(frame, Appearance::accent().withAlphaComponent(0.9), 1.5);
    else
        Paint::stroke(frame, white(0.12), 1.0);
    drawLabel(entry, card, box.maxY() + labelGap);
}

void PreviewView::drawThumbnail(const WindowEntry& entry, const CGRect& box)
{
    const auto image = Preview::thumbnail(entry.id, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->setNeedsDisplay();
    });
    if (!image) {
        drawPlaceholder(box);
        return;
    }
    NSGraphicsContext& context = *NSGraphicsContext::current();
    context.saveGraphicsState();
    context.addClip(Paint::rounded(box, thumbnailRadius));
    image->drawInRect(filling(box, image->size()));
    context.restoreGraphicsState();
}

void PreviewView::drawLabel(const WindowEntry& entry, const CGRect& card, double y) const
{
    const std::string text = shortenedText(label(entry), labelFont, labelRoom, leastLabel);
    const double width = sizeWithAttributes(text, labelFont).width;
    drawAtPoint(text, { card.midX() - width * 0.5, y }, labelFont, NSColor::white());
}
