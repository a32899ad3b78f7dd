#include "bar/TooltipView.h"

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "look/Paint.h"

#include <cmath>
#include <utility>

namespace {

constexpr double radius = 6;
const NSFont font = NSFont::systemFont(12, NSFontWeight::medium);

}

void TooltipView::setText(std::string text)
{
    text_ = std::move(text);
    setNeedsDisplay();
}

CGSize TooltipView::fittingSize() const
{
    const CGSize size = sizeWithAttributes(text_, font);
    return { std::ceil(size.width) + 20, std::ceil(size.height) + 12 };
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
