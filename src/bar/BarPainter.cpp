#include "bar/BarPainter.h"

#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "log/Log.h"
#include "look/Paint.h"
#include "look/Palette.h"

#include <algorithm>
#include <cmath>

using Paint::fill;
using Paint::rounded;
using Paint::stroke;

namespace {

/// A square of that side around the middle of `rect`.
CGRect centredSquare(const CGRect& rect, double side)
{
    return { rect.midX() - side * 0.5, rect.midY() - side * 0.5, side, side };
}

void fillRect(const CGRect& rect, const NSColor& color)
{
    const auto* context = NSGraphicsContext::current();
    color.set();
    NSRectFillUsingOperation(rect, context ? context->compositingOperation() : NSCompositingOperation::sourceOver);
}

/// The image's shape in one colour.
NSImage tint(const NSImage& image, const NSColor& color)
{
    return NSImage::imageWithSize(image.size(), false, [&](CGRect rect) {
        image.drawInRect(rect);
        color.set();
        NSRectFillUsingOperation(rect, NSCompositingOperation::sourceAtop);
        return true;
    });
}

/// Draws a symbol in one colour, at its own size, in the middle of `box`. False when there is no such symbol.
bool drawSymbol(const char* name, const char* description, double pointSize, const NSColor& color, const CGRect& box)
{
    const auto symbol = NSImage::imageWithSystemSymbolName(name, description);
    if (!symbol)
        return false;
    const auto configuration = NSImageSymbolConfiguration::configuration(pointSize, NSFontWeight::semibold);
    const NSImage image = tint(symbol->imageWithSymbolConfiguration(configuration), color);
    const CGSize size = image.size();
    image.drawInRect({ box.midX() - size.width * 0.5, box.midY() - size.height * 0.5, size.width, size.height });
    return true;
}

void logFirstPips(int count, const BarItem& item)
{
    static bool logged = false;
    if (logged)
        return;
    logged = true;
    Log::debug("pips: drawing ", count, " for ", item.name);
}

}

BarPainter::BarPainter(const BarPicture& picture)
    : picture_(picture)
    , look_(picture.look)
    , layout_(picture.layout)
    , metrics_(picture.layout.metrics())
{
}

void BarPainter::draw() const
{
    drawBody();
    if (!isFloating())
        drawHairline();
    if (layout_.shows(BarComponent::launcher))
        drawLauncher();
    if (layout_.shows(BarComponent::search))
        drawSearchBox();
    if (layout_.shows(BarComponent::showDesktop))
        drawShowDesktop();
    if (layout_.shows(BarComponent::finder))
        drawFinder();
    drawSeparator(layout_.leadingSeparatorX());
    if (layout_.shows(BarComponent::trash)) {
        drawSeparator(layout_.trailingSeparatorX());
        drawTrash();
    }
    drawButtons();
    drawDraggedIcon();
}

void BarPainter::drawBody() const
{
    const CGRect bounds { 0, 0, layout_.size().width, layout_.size().height };
    const double radius = isFloating() ? metrics_.scaled(12) : 0;
    const NSBezierPath shape = rounded(CGRectInset(bounds, look_.floatingInset, look_.floatingInset), radius);
    const NSColor color = look_.tint.withAlphaComponent(look_.opacity);

    switch (look_.style) {
    case BarStyle::solid:
        fill(shape, color);
        return;
    case BarStyle::translucent:
        fill(shape, color.withAlphaComponent(look_.opacity * 0.55));
        return;
    case BarStyle::gradient:
        const NSColor darker = look_.tint.blended(0.45, NSColor::black()).withAlphaComponent(look_.opacity);
        // The darker end lies at the screen's edge.
        NSGradient(color, darker).drawInBezierPath(shape, isTop(look_.edge) ? 90 : -90);
        return;
    }
}

void BarPainter::drawHairline() const
{
    const double y = isTop(look_.edge) ? 0 : layout_.size().height - 1;
    fillRect({ 0, y, layout_.size().width, 1 }, Palette::topHairline);
}

void BarPainter::drawLauncher() const
{
    drawHoverPill(BarComponent::launcher, BarHit::launcher);
    if (picture_.launcher && picture_.launcher->icon)
        picture_.launcher->icon->drawInRect(centredSquare(layout_.rect(BarComponent::launcher), metrics_.iconSize()));
}

void BarPainter::drawSearchBox() const
{
    const NSBezierPath shape = rounded(layout_.rect(BarComponent::search), metrics_.searchRadius());
    const bool isLit = picture_.isSearchFocused || picture_.hovered == BarHit::search;
    fill(shape, isLit ? Palette::searchFillHover : Palette::searchFill);
    if (picture_.isSearchFocused)
        stroke(shape, look_.accent.withAlphaComponent(0.9), 1.5);
    else
        stroke(shape, Palette::searchStroke, 1.0);

    const NSColor glassColor = picture_.isSearchFocused ? NSColor::white() : Palette::searchIcon;
    drawSymbol("magnifyingglass", "Search", metrics_.scaled(12), glassColor, layout_.magnifierBox());
}

void BarPainter::drawShowDesktop() const
{
    const CGRect& rect = layout_.rect(BarComponent::showDesktop);
    if (picture_.isShowingDesktop)
        drawPill(rect, Palette::activeFill);
    else
        drawHoverPill(BarComponent::showDesktop, BarHit::showDesktop);
    drawGlyphTile({ "display", "desktopcomputer", "macwindow" }, rect, "Show desktop",
        NSColor::colorWithCalibratedRed(0.36, 0.62, 0.98, 1.0), NSColor::colorWithCalibratedRed(0.14, 0.38, 0.86, 1.0));
}

void BarPainter::drawTrash() const
{
    drawHoverPill(BarComponent::trash, BarHit::trash);
    drawGlyphTile({ picture_.isTrashEmpty ? "trash" : "trash.fill" }, layout_.rect(BarComponent::trash), "Trash",
        NSColor::colorWithCalibratedRed(0.62, 0.66, 0.71, 1.0), NSColor::colorWithCalibratedRed(0.42, 0.46, 0.52, 1.0));
}

void BarPainter::drawFinder() const
{
    if (picture_.finder)
        drawItem(*picture_.finder, layout_.rect(BarComponent::finder), picture_.hovered == BarHit::finder);
}

void BarPainter::drawSeparator(double x) const
{
    const double height = layout_.size().height;
    const double inset = std::round(height * 0.26);
    fillRect({ x, inset, 1, height - 2 * inset }, Palette::separator);
}

void BarPainter::drawButtons() const
{
    int position = 0;
    for (const BarItem& item : picture_.buttons) {
        const CGRect rect = layout_.buttonRect(position);
        if (picture_.drag && picture_.drag->landing == position)
            drawPill(rect, Palette::hoverFill);
        else
            drawItem(item, rect, picture_.hovered == position);
        ++position;
    }
}

void BarPainter::drawItem(const BarItem& item, const CGRect& rect, bool isHovered) const
{
    if (item.demandsAttention)
        drawPill(rect, Palette::attentionFill);
    if (item.isFrontmost)
        drawPill(rect, Palette::activeFill);
    else if (isHovered)
        drawPill(rect, Palette::hoverFill);

    CGRect iconBox = centredSquare(rect, metrics_.iconSize());
    iconBox.y += lift();
    if (item.icon)
        item.icon->drawInRect(iconBox, item.isRunning() ? 1.0 : Palette::idleIconAlpha);
    drawRunningIndicator(item, rect);
    drawBadge(item, iconBox);
}

void BarPainter::drawRunningIndicator(const BarItem& item, const CGRect& rect) const
{
    if (!item.isRunning())
        return;
    if (look_.showsPips && !item.windowID && item.windowCount >= 2)
        drawPips(item, rect);
    else
        drawDash(item, rect);
}

void BarPainter::drawPips(const BarItem& item, const CGRect& rect) const
{
    const int count = std::min(item.windowCount, 3);
    logFirstPips(count, item);

    const double width = metrics_.scaled(8);
    const double gap = metrics_.scaled(4);
    const double left = rect.midX() - (width * count + gap * (count - 1)) * 0.5;
    for (int pip = 0; pip < count; ++pip)
        drawMark(left + pip * (width + gap), width, rect, markColor(item));
}

void BarPainter::drawDash(const BarItem& item, const CGRect& rect) const
{
    const double width = item.isFrontmost ? rect.width - 2 * metrics_.pillInset() - 12 : metrics_.indicatorWidth();
    drawMark(rect.midX() - width * 0.5, width, rect, markColor(item));
}

void BarPainter::drawMark(double x, double width, const CGRect& rect, const NSColor& color) const
{
    const double height = metrics_.indicatorHeight();
    const double distance = metrics_.pillInset() + height;
    const double y = isTop(look_.edge) ? rect.maxY() - distance - height : distance;
    fill(rounded({ x, y, width, height }, height * 0.5), color);
}

void BarPainter::drawBadge(const BarItem& item, const CGRect& iconBox) const
{
    if (!item.badge || item.badge->empty())
        return;
    const NSFont font = NSFont::systemFont(metrics_.scaled(9), NSFontWeight::semibold);
    const CGSize text = sizeWithAttributes(*item.badge, font);
    const double height = metrics_.scaled(15);
    const double width = std::max(height, text.width + 8);
    // Both offsets go by the width, so that a wide badge moves down as well as left.
    const CGRect badge { iconBox.maxX() - width * 0.55, iconBox.maxY() - width * 0.45, width, height };

    const NSBezierPath shape = rounded(badge, height * 0.5);
    fill(shape, NSColor::systemRed());
    stroke(shape, NSColor::colorWithCalibratedWhite(0.0, 0.25), 0.5);
    const CGPoint origin { badge.midX() - text.width * 0.5, badge.midY() - text.height * 0.5 };
    drawAtPoint(*item.badge, origin, font, NSColor::white());
}

void BarPainter::drawGlyphTile(std::initializer_list<const char*> symbolNames, const CGRect& rect,
    const char* description, const NSColor& top, const NSColor& bottom) const
{
    const double side = std::round(metrics_.iconSize() * 0.86);
    // On a line with the bottom of the buttons' icons.
    const CGRect tile { rect.midX() - side * 0.5, rect.midY() - metrics_.iconSize() * 0.5 + lift(), side, side };
    const NSBezierPath shape = rounded(tile, side * 0.24);
    NSGradient(top, bottom).drawInBezierPath(shape, -90);
    stroke(shape, NSColor::colorWithCalibratedWhite(0.0, 0.18), 0.5);

    for (const char* name : symbolNames)
        if (drawSymbol(name, description, side * 0.52, NSColor::white(), tile))
            return;
}

void BarPainter::drawDraggedIcon() const
{
    if (!picture_.drag || !picture_.drag->icon)
        return;
    auto* context = NSGraphicsContext::current();
    const double side = metrics_.iconSize() * 1.2;
    const double y = (layout_.size().height - side) * 0.5 + metrics_.indicatorHeight();

    context->saveGraphicsState();
    context->setShadow({ NSColor::black().withAlphaComponent(0.5), 8.0, { 0, -2 } });
    picture_.drag->icon->drawInRect({ picture_.drag->pointX - side * 0.5, y, side, side });
    context->restoreGraphicsState();
}

void BarPainter::drawPill(const CGRect& rect, const NSColor& color) const
{
    const double inset = metrics_.pillInset();
    fill(rounded(CGRectInset(rect, inset, inset), metrics_.pillRadius()), color);
}

void BarPainter::drawHoverPill(BarComponent component, int hit) const
{
    if (picture_.hovered == hit)
        drawPill(layout_.rect(component), Palette::hoverFill);
}

double BarPainter::lift() const
{
    return isTop(look_.edge) ? -metrics_.indicatorHeight() : metrics_.indicatorHeight();
}

NSColor BarPainter::markColor(const BarItem& item) const
{
    if (item.demandsAttention)
        return NSColor::systemRed();
    return item.isFrontmost ? look_.accent : Palette::runningDot;
}
