#include "widgets/FormLook.h"

#include "appkit/ImageCache.h"
#include "appkit/NSImage.h"
#include "appkit/Pixels.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <utility>

namespace FormLook {

QFont font(double size, QFont::Weight weight)
{
    constexpr double ordinary = 13;
    constexpr double pixelsOfAPoint = 96.0 / 72;
    QFont font = QApplication::font();
    const double pixels
        = font.pointSizeF() > 0 ? font.pointSizeF() * pixelsOfAPoint * Pixels::scale() : font.pixelSize();
    font.setPixelSize(std::max(1, qRound(pixels * size / ordinary)));
    font.setWeight(weight);
    return font;
}

QColor color(const QPalette& palette, forms::TextStyle style)
{
    constexpr std::array shares { 1.0, 0.78, 0.64 };
    const double share = shares.at(static_cast<std::size_t>(style));
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor ground = palette.color(QPalette::Active, QPalette::Window);
    const auto mixed = [share](int front, int back) { return qRound(front * share + back * (1 - share)); };
    return { mixed(text.red(), ground.red()), mixed(text.green(), ground.green()), mixed(text.blue(), ground.blue()) };
}

QPixmap symbol(const std::string& name, int pixels, const QColor& color)
{
    const auto image = NSImage::imageWithSystemSymbolName(name, "");
    if (!image)
        return {};
    QPixmap picture = ImageCache::pixmap(*image, { pixels, pixels });
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

QIcon symbolIcon(const std::string& name, int pixels, const QPalette& palette)
{
    QIcon icon;
    for (const auto& [mode, group] :
        { std::pair(QIcon::Normal, QPalette::Active), { QIcon::Disabled, QPalette::Disabled } })
        icon.addPixmap(symbol(name, pixels, palette.color(group, QPalette::ButtonText)), mode);
    return icon;
}

}

StyledLabel::StyledLabel(forms::TextStyle style, QWidget* parent)
    : QLabel(parent)
    , style_(style)
{
    setTextFormat(Qt::PlainText);
    color();
}

void StyledLabel::setStyle(forms::TextStyle style)
{
    if (std::exchange(style_, style) != style)
        color();
}

void StyledLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !isColoring_)
        color();
}

/// From the colours around it, since its own are changed by this.
void StyledLabel::color()
{
    isColoring_ = true;
    const QPalette around = parentWidget() ? parentWidget()->palette() : QApplication::palette();
    QPalette own = palette();
    own.setColor(QPalette::WindowText, FormLook::color(around, style_));
    setPalette(own);
    isColoring_ = false;
}
