#include "appkit/DrawingPainter.h"

#include "appkit/Colors.h"
#include "appkit/Fonts.h"
#include "appkit/ImageCache.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

QPainter::CompositionMode mode(NSCompositingOperation operation)
{
    return operation == NSCompositingOperation::sourceAtop ? QPainter::CompositionMode_SourceAtop
                                                           : QPainter::CompositionMode_SourceOver;
}

void drawRounded(QPainter& painter, const QRectF& box, const NSBezierPath& path)
{
    if (path.xRadius() <= 0 || path.yRadius() <= 0)
        painter.drawRect(box);
    else
        painter.drawRoundedRect(box, path.xRadius(), path.yRadius());
}

/// A blurred copy of a picture's shape in one colour, with `margin` more pixels on every side. Three box blurs come
/// close to a Gaussian.
QImage blurredShape(const QPixmap& picture, const QColor& color, int margin)
{
    QImage image(picture.width() + 2 * margin, picture.height() + 2 * margin, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawPixmap(margin, margin, picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();

    const int factor = std::max(1, margin / 2);
    for (int pass = 0; pass < 3; ++pass) {
        const QSize small(std::max(1, image.width() / factor), std::max(1, image.height() / factor));
        image = image.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                    .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return image;
}

}

DrawingPainter::DrawingPainter(QPainter& painter, CGSize size, bool flipped)
    : painter_(painter)
    , size_(size)
    , scale_(painter.worldTransform().m11())
    , flipped_(flipped)
{
}

/// Has the body paint in pixels instead of points.
template <class Body>
void DrawingPainter::inPixels(const Body& body)
{
    const QTransform points = painter_.worldTransform();
    // Where they are the same, a change would still cost the toolkit.
    if (points.isIdentity())
        return body();
    painter_.setWorldTransform({});
    body();
    painter_.setWorldTransform(points);
}

/// The box moved to the nearest whole pixels, and as many of them large: two that are alike remain so. It doesn't
/// vanish.
QRectF DrawingPainter::onPixels(const QRectF& box) const
{
    const auto place = [this](double points) { return std::round(points * scale_) / scale_; };
    const auto length = [this](double points) { return std::max(1.0, std::round(points * scale_)) / scale_; };
    if (box.isEmpty())
        return box;
    return { place(box.x()), place(box.y()), length(box.width()), length(box.height()) };
}

QRectF DrawingPainter::toPainter(const CGRect& rect) const
{
    return { rect.x, flipped_ ? rect.y : size_.height - rect.maxY(), rect.width, rect.height };
}

void DrawingPainter::fill(const NSBezierPath& path, const NSColor& fillColor, NSCompositingOperation operation)
{
    painter_.setCompositionMode(mode(operation));
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(toolkitColor(fillColor));
    drawRounded(painter_, onPixels(toPainter(path.bounds())), path);
    painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void DrawingPainter::stroke(const NSBezierPath& path, const NSColor& strokeColor)
{
    const double pixels = path.lineWidth() * scale_;
    const double width = (pixels < 1 ? pixels : std::round(pixels)) / scale_;
    painter_.setPen(QPen(toolkitColor(strokeColor), width));
    painter_.setBrush(Qt::NoBrush);
    drawRounded(painter_, onPixels(toPainter(path.bounds())), path);
}

void DrawingPainter::fillGradient(const NSBezierPath& path, const NSColor& start, const NSColor& end, double angle)
{
    const QRectF box = onPixels(toPainter(path.bounds()));
    // The gradient's line runs through the middle of the box and ends where the box's farthest corners lie across it.
    const double radians = angle * std::numbers::pi / 180;
    const double dx = std::cos(radians);
    const double dy = flipped_ ? std::sin(radians) : -std::sin(radians);
    const double reach = (std::abs(dx) * box.width() + std::abs(dy) * box.height()) / 2;
    const QPointF half(dx * reach, dy * reach);
    QLinearGradient gradient(box.center() - half, box.center() + half);
    gradient.setColorAt(0, toolkitColor(start));
    gradient.setColorAt(1, toolkitColor(end));
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(gradient);
    drawRounded(painter_, box, path);
}

void DrawingPainter::drawImage(const NSImage& image, const CGRect& rect, double fraction)
{
    // Half a pixel off, every edge in a picture blurs.
    const QRectF box = toPainter(rect);
    const QPointF corner(std::round(box.x() * scale_), std::round(box.y() * scale_));
    const QSize size = (box.size() * scale_).toSize();
    const QPixmap picture = ImageCache::pixmap(image, size);
    if (picture.isNull())
        return;

    inPixels([&] {
        if (shadows_.back())
            drawShadow(image, { corner, size });
        painter_.setOpacity(fraction);
        painter_.setRenderHint(QPainter::SmoothPixmapTransform);
        painter_.drawPixmap(QRectF(corner, size), picture, QRectF(picture.rect()));
        painter_.setOpacity(1.0);
    });
}

void DrawingPainter::drawShadow(const NSImage& image, const QRectF& pixels)
{
    const NSShadow& shadow = *shadows_.back();
    const int margin = static_cast<int>(std::ceil(shadow.blurRadius * scale_));
    const QImage shape
        = blurredShape(ImageCache::pixmap(image, pixels.size().toSize()), toolkitColor(shadow.color), margin);
    const double down = flipped_ ? shadow.offset.height : -shadow.offset.height;
    const QPointF offset = QPointF(shadow.offset.width, down) * scale_;
    painter_.drawImage(pixels.topLeft() + offset - QPointF(margin, margin), shape);
}

/// Text has the shapes and widths of a font of its size in pixels; another size enlarged would be blurred.
void DrawingPainter::drawText(std::string_view text, CGPoint point, const NSFont& font, const NSColor& textColor)
{
    const QFont& toolkit = toolkitFont(font, scale_);
    const QFontMetricsF metrics(toolkit);
    const double baseline
        = flipped_ ? point.y * scale_ + metrics.ascent() : (size_.height - point.y) * scale_ - metrics.descent();
    painter_.setFont(toolkit);
    painter_.setPen(toolkitColor(textColor));
    inPixels([&] {
        painter_.drawText(
            QPointF(point.x * scale_, baseline), QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    });
}

void DrawingPainter::saveGraphicsState()
{
    painter_.save();
    shadows_.push_back(shadows_.back());
}

void DrawingPainter::restoreGraphicsState()
{
    painter_.restore();
    if (shadows_.size() > 1)
        shadows_.pop_back();
}

void DrawingPainter::setShadow(const NSShadow& shadow)
{
    shadows_.back() = shadow;
}

void DrawingPainter::addClip(const NSBezierPath& path)
{
    QPainterPath shape;
    shape.addRoundedRect(onPixels(toPainter(path.bounds())), path.xRadius(), path.yRadius());
    painter_.setClipPath(shape, Qt::IntersectClip);
}
