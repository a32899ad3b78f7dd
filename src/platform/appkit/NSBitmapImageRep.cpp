#include "appkit/NSBitmapImageRep.h"

#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace {

/// The painter's origin is the view's upper left corner.
void paint(NSView& view, QPainter& painter)
{
    if (view.isHidden())
        return;
    DrawingPainter context(painter, view.frame().size(), view.isFlipped());
    view.record().replay(context);
    for (const auto& subview : view.subviews()) {
        const CGRect& frame = subview->frame();
        const double top = view.isFlipped() ? frame.y : view.frame().height - frame.y - frame.height;
        painter.save();
        painter.translate(frame.x, top);
        paint(*subview, painter);
        painter.restore();
    }
}

int pixels(double points)
{
    return static_cast<int>(std::ceil(points));
}

}

NSBitmapImageRep::NSBitmapImageRep(NSView& view)
    : image_(std::make_unique<QImage>(
        pixels(view.frame().width), pixels(view.frame().height), QImage::Format_ARGB32_Premultiplied))
{
    image_->fill(Qt::transparent);
    QPainter painter(image_.get());
    painter.setRenderHint(QPainter::Antialiasing);
    paint(view, painter);
}

NSBitmapImageRep::~NSBitmapImageRep() = default;

int NSBitmapImageRep::pixelsWide() const
{
    return image_->width();
}

int NSBitmapImageRep::pixelsHigh() const
{
    return image_->height();
}

double NSBitmapImageRep::alphaAt(int x, int y) const
{
    return qAlpha(image_->pixel(x, y)) / 255.0;
}
