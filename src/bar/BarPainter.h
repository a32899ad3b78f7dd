#pragma once

#include "bar/BarPicture.h"

#include <initializer_list>

/// Draws a bar into the current graphics context. The same picture is always drawn by the same operations.
class BarPainter {
public:
    /// The picture must outlive the painter.
    explicit BarPainter(const BarPicture& picture);

    void draw() const;

private:
    void drawBody() const;
    void drawHairline() const;
    void drawLauncher() const;
    void drawSearchBox() const;
    void drawShowDesktop() const;
    void drawFinder() const;
    void drawSeparator(double x) const;
    void drawTrash() const;
    void drawButtons() const;
    void drawDraggedIcon() const;

    void drawPill(const CGRect& rect, const NSColor& color) const;
    void drawHoverPill(BarComponent component, int hit) const;
    void drawItem(const BarItem& item, const CGRect& rect, bool isHovered) const;
    void drawRunningIndicator(const BarItem& item, const CGRect& rect) const;
    void drawPips(const BarItem& item, const CGRect& rect) const;
    void drawDash(const BarItem& item, const CGRect& rect) const;
    void drawMark(double x, double width, const CGRect& rect, const NSColor& color) const;
    void drawBadge(const BarItem& item, const CGRect& iconBox) const;
    /// A rounded tile with a white symbol: the first of the names that there is a symbol of.
    void drawGlyphTile(std::initializer_list<const char*> symbolNames, const CGRect& rect, const char* description,
        const NSColor& top, const NSColor& bottom) const;

    bool isFloating() const { return look_.floatingInset > 0; }
    /// How far icons stand off the middle, away from the edge with the indicators.
    double lift() const;
    NSColor markColor(const BarItem& item) const;

    const BarPicture& picture_;
    const BarLook& look_;
    const BarLayout& layout_;
    const Metrics& metrics_;
};
