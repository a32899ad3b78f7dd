#include "bar/TooltipView.h"

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/ShortenedText.h"
#include "look/Paint.h"

#include <cmath>

namespace {

constexpr double radius = 6;
/// To the left and the right of the text, together.
constexpr double margins = 20;
const NSFont font = NSFont::systemFont(12, NSFontWeight::medium);

}

void TooltipView::setText(const std::string& text, double width)
{
    text_ = shortenedText(text, font, width - margins, 1);
    setNeedsDisplay();
}

CGSize TooltipView::fittingSize() const
{
    const CGSize size = sizeWithAttributes(text_, font);
    return { std::ceil(size.width) + margins, std::ceil(size.height) + 12 };
}

void TooltipView::draw(const CGRect&)
{
    const NSBezierPath plate = Paint::rounded(bounds(), radius);
    Paint::fill(plate, NSColor::colorWithCalibratedWhite(0.14, 0.97));
    Paint::stroke(plate, NSColor::colorWithCalibratedWhite(1.0, 0.16), 1.0);
    const CGSize size = sizeWithAttributes(text_, font);
    drawAtPoint(
        text_, { bounds().midX() - size.width * 0.5, bounds().midY() - size.height * 0.5 }, font, NSColor::white());
}
