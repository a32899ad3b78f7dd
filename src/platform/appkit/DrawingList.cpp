#include "appkit/DrawingList.h"

namespace {

/// Carries out one recorded operation.
struct Player {
    NSGraphicsContext& context;

    void operator()(const Drawing::Fill& fill) const { context.fill(fill.path, fill.color, fill.operation); }
    void operator()(const Drawing::Stroke& stroke) const { context.stroke(stroke.path, stroke.color); }
    void operator()(const Drawing::Gradient& gradient) const
    {
        context.fillGradient(gradient.path, gradient.start, gradient.end, gradient.angle);
    }
    void operator()(const Drawing::Image& image) const { context.drawImage(image.image, image.rect, image.fraction); }
    void operator()(const Drawing::Text& text) const { context.drawText(text.text, text.point, text.font, text.color); }
    void operator()(const Drawing::Save&) const { context.saveGraphicsState(); }
    void operator()(const Drawing::Restore&) const { context.restoreGraphicsState(); }
    void operator()(const Drawing::Shadow& shadow) const { context.setShadow(shadow.shadow); }
    void operator()(const Drawing::Clip& clip) const { context.addClip(clip.path); }
};

}

void DrawingList::replay(NSGraphicsContext& context) const
{
    for (const Drawing::Operation& operation : operations)
        std::visit(Player { context }, operation);
}

void DrawingRecorder::fill(const NSBezierPath& path, const NSColor& fillColor, NSCompositingOperation operation)
{
    list.operations.emplace_back(Drawing::Fill { path, fillColor, operation });
}

void DrawingRecorder::stroke(const NSBezierPath& path, const NSColor& strokeColor)
{
    list.operations.emplace_back(Drawing::Stroke { path, strokeColor });
}

void DrawingRecorder::fillGradient(const NSBezierPath& path, const NSColor& start, const NSColor& end, double angle)
{
    list.operations.emplace_back(Drawing::Gradient { path, start, end, angle });
}

void DrawingRecorder::drawImage(const NSImage& image, const CGRect& rect, double fraction)
{
    list.operations.emplace_back(Drawing::Image { image, rect, fraction });
}

void DrawingRecorder::drawText(std::string_view text, CGPoint point, const NSFont& font, const NSColor& textColor)
{
    list.operations.emplace_back(Drawing::Text { std::string(text), point, font, textColor });
}

void DrawingRecorder::saveGraphicsState()
{
    list.operations.emplace_back(Drawing::Save {});
}

void DrawingRecorder::restoreGraphicsState()
{
    list.operations.emplace_back(Drawing::Restore {});
}

void DrawingRecorder::setShadow(const NSShadow& shadow)
{
    list.operations.emplace_back(Drawing::Shadow { shadow });
}

void DrawingRecorder::addClip(const NSBezierPath& path)
{
    list.operations.emplace_back(Drawing::Clip { path });
}
