#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"
#include "base/IconSource.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace {

/// A picture of what the body draws, 40 by 40, clear where nothing is.
template <class Body>
QImage painted(const Body& body, bool flipped = false)
{
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawingPainter context(painter, { 40, 40 }, flipped);
    const NSGraphicsContext::Scope scope(context);
    body();
    painter.end();
    return image;
}

const NSColor red = NSColor::colorWithSRGBRed(1, 0, 0, 1);
const NSColor blue = NSColor::colorWithSRGBRed(0, 0, 1, 1);

TEST(DrawingPainterTest, YGrowsUpwardUnlessTheViewIsFlippedAndAGradientRunsAlongItsAngle)
{
    const NSBezierPath whole = NSBezierPath::rect({ 0, 0, 40, 40 });
    const struct {
        double angle;
        bool isFlipped;
        QPoint start, end;
    } cases[] = { { -90, false, { 20, 1 }, { 20, 38 } }, { -90, true, { 20, 38 }, { 20, 1 } },
        { 0, false, { 1, 20 }, { 38, 20 } } };
    for (const auto& test : cases) {
        const auto draw = [&] { NSGradient(red, blue).drawInBezierPath(whole, test.angle); };
        const QImage image = painted(draw, test.isFlipped);
        EXPECT_GT(image.pixelColor(test.start).red(), 230) << test.angle;
        EXPECT_GT(image.pixelColor(test.end).blue(), 230) << test.angle;
    }
}

TEST(DrawingPainterTest, AnImageIsDrawnAtItsFractionAndItsShadowFallsBelow)
{
    const IconSource white { std::vector { IconSource::Pixels { 1, 1, { 0xFFFFFFFF } } } };
    const NSImage image(std::make_shared<const IconSource>(white));
    const QImage picture = painted([&] {
        NSGraphicsContext* context = NSGraphicsContext::current();
        context->saveGraphicsState();
        context->setShadow({ NSColor::black(), 8, { 0, -2 } });
        image.drawInRect({ 0, 24, 16, 16 });
        context->restoreGraphicsState();
        image.drawInRect({ 24, 0, 16, 16 }, 0.42);
    });
    EXPECT_GT(picture.pixelColor(8, 18).alpha(), 20) << "the shadow";
    EXPECT_NEAR(picture.pixelColor(32, 32).alpha(), 0.42 * 255, 2);
    EXPECT_EQ(picture.pixelColor(32, 22).alpha(), 0) << "its shadow has gone with the state";
}

TEST(DrawingPainterTest, AnImageTintedAtopKeepsItsShape)
{
    const NSImage symbol = *NSImage::imageWithSystemSymbolName("display", "");
    const NSImage tinted = NSImage::imageWithSize(symbol.size(), false, [&](CGRect rect) {
        symbol.drawInRect(rect);
        red.set();
        NSRectFillUsingOperation(rect, NSCompositingOperation::sourceAtop);
        return true;
    });
    const QImage plain = painted([&] { symbol.drawInRect({ 0, 0, 40, 40 }); });
    const QImage coloured = painted([&] { tinted.drawInRect({ 0, 0, 40, 40 }); });
    int solid = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            ASSERT_NEAR(plain.pixelColor(x, y).alpha(), coloured.pixelColor(x, y).alpha(), 3);
            solid += plain.pixelColor(x, y).alpha() == 255 && coloured.pixelColor(x, y) == QColor(Qt::red);
        }
    EXPECT_GT(solid, 50);
}

}
