#pragma once

#include "appkit/NSGraphicsContext.h"

#include <memory>
#include <vector>

class QPainter;
class QRectF;

/// The context that paints, with the toolkit's painter. For the layer's own use.
class DrawingPainter final : public NSGraphicsContext {
public:
    /// `size` is that of the view or picture; the painter's origin is its upper left corner.
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
    void drawShadow(const NSImage& image, const QRectF& box);

    QPainter& painter_;
    CGSize size_;
    bool flipped_;
    std::vector<std::optional<NSShadow>> shadows_ { std::nullopt };
};
