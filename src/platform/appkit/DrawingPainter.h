#pragma once

#include "appkit/NSGraphicsContext.h"

#include <memory>
#include <vector>

class QPainter;
class QRectF;

/// The context that paints, with the toolkit's painter. For the layer's own use.
class DrawingPainter final : public NSGraphicsContext {
public:
    /// `size` is that of the view or picture in points; the painter's origin is its upper left corner, and its
    /// transform says how many pixels a point has. Edges, lines, pictures and text are fitted to whole pixels.
    DrawingPainter(QPainter& painter, CGSize size, bool flipped);

    void fill(const NSBezierPath& path, const NSColor& color, NSCompositingOperation operation) override;
    void stroke(const NSBezierPath& path, const NSColor& color) override;
    void fillGradient(const NSBezierPath& path, const NSColor& start, const NSColor& end, double angle) override;
    void drawImage(const NSImage& image, const CGRect& rect, double fraction) override;
    void drawText(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color) override;
    void saveGraphicsState() override;
    void restoreGraphicsState() override;
    void setShadow(const NSShadow& shadow) override;
    void addClip(const NSBezierPath& path) override;

private:
    QRectF toPainter(const CGRect& rect) const;
    QRectF onPixels(const QRectF& box) const;
    void drawShadow(const NSImage& image, const QRectF& pixels);
    template <class Body>
    void inPixels(const Body& body);

    QPainter& painter_;
    CGSize size_;
    /// Pixels to a point.
    double scale_;
    bool flipped_;
    std::vector<std::optional<NSShadow>> shadows_ { std::nullopt };
};
