#include "embedded/DisplayPainter.h"

#include "base/IconSource.h"
#include "embedded/Art.h"
#include "embedded/WindowContent.h"
#include "embedded/WindowParts.h"
#include "embedded/World.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <array>

namespace embedded {

namespace {

constexpr double windowRadius = 10;
constexpr double dockGap = 8;

QFont fontOf(int pixels, QFont::Weight weight = QFont::Normal)
{
    QFont font("Sans Serif");
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

void paintIcon(QPainter& painter, const IconSource& icon, const QRectF& rect)
{
    if (const auto* svg = std::get_if<IconSource::Svg>(&icon.content))
        QSvgRenderer(QByteArray::fromStdString(svg->text)).render(&painter, rect);
    else if (const auto* file = std::get_if<IconSource::File>(&icon.content))
        painter.drawPixmap(rect.toRect(), QPixmap(QString::fromStdString(file->path)));
}

void paintShadow(QPainter& painter, const QRectF& frame, bool isFocused)
{
    const int reach = isFocused ? 16 : 9;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, isFocused ? 9 : 8));
    for (int spread = reach; spread > 0; spread -= 2)
        painter.drawRoundedRect(
            frame.adjusted(-spread, -spread / 2.0, spread, spread * 1.2), windowRadius + spread, windowRadius + spread);
}

}

DisplayPainter::DisplayPainter(const World& world, std::size_t screen)
    : world_(world)
    , screen_(world.screens().all().at(screen))
{
}

QImage DisplayPainter::picture() const
{
    QImage image(QSizeF(screen_.frame.width, screen_.frame.height).toSize(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(QByteArray::fromStdString(Art::read("wallpaper.svg").value_or(""))).render(&painter, image.rect());

    const auto stack = world_.stack();
    for (auto window = stack.rbegin(); window != stack.rend(); ++window) {
        if (shows(**window))
            paintWindow(painter, **window);
    }
    if (world_.screens().isFullScreen(screen_.currentSpace))
        return image;
    paintDock(painter);
    paintMenuBar(painter);
    return image;
}

QImage DisplayPainter::picture(const Window& window, QSize size) const
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = frameOf(window);
    painter.scale(size.width() / frame.width(), size.height() / frame.height());
    painter.translate(-frame.topLeft());
    paintWindow(painter, window);
    return image;
}

QRectF DisplayPainter::frameOf(const Window& window) const
{
    const CGRect corner = world_.screens().flipped(screen_.frame);
    return QRectF(window.bounds.x - corner.x, window.bounds.y - corner.y, window.bounds.width, window.bounds.height);
}

const Window* DisplayPainter::windowAt(const QPointF& point) const
{
    const auto stack = world_.stack();
    const auto found = std::find_if(stack.begin(), stack.end(),
        [&](const Window* window) { return shows(*window) && frameOf(*window).contains(point); });
    return found == stack.end() ? nullptr : *found;
}

bool DisplayPainter::shows(const Window& window) const
{
    const bool isHere
        = std::find(window.spaces.begin(), window.spaces.end(), screen_.currentSpace) != window.spaces.end();
    return isHere && !window.isPartOfDesktop() && world_.isOnScreen(window);
}

void DisplayPainter::paintWindow(QPainter& painter, const Window& window) const
{
    const QRectF frame = frameOf(window);
    const RunningProcess* owner = world_.process(window.owner);
    if (window.isFullScreen()) {
        paintContent(painter, frame, owner->icon);
        return;
    }

    QPainterPath shape;
    shape.addRoundedRect(frame, windowRadius, windowRadius);
    const bool isFocused = world_.frontmost() == window.owner && world_.focusedWindow(window.owner) == &window;
    paintShadow(painter, frame, isFocused);
    painter.save();
    painter.setClipPath(shape);
    const QRectF content = WindowParts(frame).content;
    paintContent(painter, content, owner->icon);
    paintTyped(painter, window, content);
    paintFrame(painter, window, frame);
    painter.restore();
    painter.setPen(QColor(0, 0, 0, 60));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape);
}

void DisplayPainter::paintFrame(QPainter& painter, const Window& window, const QRectF& frame) const
{
    static const std::array<QColor, 3> lit { QColor("#ff5f57"), QColor("#febc2e"), QColor("#28c840") };
    const WindowParts parts(frame);
    const bool isFocused = world_.frontmost() == window.owner && world_.focusedWindow(window.owner) == &window;

    painter.fillRect(parts.titleBar, isFocused ? QColor("#e9eaee") : QColor("#f4f5f7"));
    painter.setPen(Qt::NoPen);
    for (std::size_t index = 0; index < parts.lights.size(); ++index) {
        painter.setBrush(isFocused ? lit[index] : QColor("#d3d5da"));
        painter.drawEllipse(parts.lights[index]);
    }
    painter.setFont(fontOf(13, QFont::DemiBold));
    painter.setPen(isFocused ? QColor("#3b3f47") : QColor("#9a9ea6"));
    const QRectF room = parts.titleBar.adjusted(76, 0, -76, 0);
    const auto title = QString::fromStdString(window.title.value_or(std::string()));
    painter.drawText(
        room, Qt::AlignCenter, QFontMetricsF(painter.font()).elidedText(title, Qt::ElideRight, room.width()));
}

void DisplayPainter::paintTyped(QPainter& painter, const Window& window, const QRectF& area) const
{
    if (window.typed.empty())
        return;
    const QRectF strip(area.left(), area.bottom() - 30, area.width(), 30);
    painter.fillRect(strip, QColor(255, 255, 255, 235));
    painter.setFont(fontOf(14));
    painter.setPen(QColor("#20242c"));
    painter.drawText(
        strip.adjusted(12, 0, -12, 0), Qt::AlignVCenter | Qt::AlignRight, QString::fromStdString(window.typed));
}

void DisplayPainter::paintMenuBar(QPainter& painter) const
{
    const QRectF bar(0, 0, screen_.frame.width, screen_.menuBarHeight);
    if (bar.isEmpty())
        return;
    painter.fillRect(bar, QColor(246, 247, 250, 225));
    painter.setPen(QColor("#23262d"));
    painter.setFont(fontOf(13, QFont::Bold));
    const RunningProcess* front = world_.frontmost() ? world_.process(*world_.frontmost()) : nullptr;
    const auto name = front ? QString::fromStdString(front->record->localizedName.value_or("?")) : QString();
    painter.drawText(bar.adjusted(18, 0, 0, 0), Qt::AlignVCenter, name);
    const double end = 18 + QFontMetricsF(painter.font()).horizontalAdvance(name);
    painter.setFont(fontOf(13));
    painter.drawText(bar.adjusted(end + 22, 0, 0, 0), Qt::AlignVCenter, "File     Edit     View     Window     Help");

    // The spaces, the current one filled.
    double x = bar.right() - 18;
    for (auto space = screen_.spaces.rbegin(); space != screen_.spaces.rend(); ++space, x -= 16) {
        painter.setBrush(space->id == screen_.currentSpace ? QBrush(QColor("#23262d")) : QBrush(Qt::NoBrush));
        painter.drawRoundedRect(QRectF(x - 6, bar.center().y() - 4, 10, 8), 2, 2);
    }
}

void DisplayPainter::paintDock(QPainter& painter) const
{
    const Dock& dock = world_.dock();
    const bool shows = screen_.dockInset > 0 && !dock.hides() && world_.processNamed(dockIdentifier);
    if (!shows || dock.edge() != Dock::Edge::bottom || dock.tiles().empty())
        return;
    const double side = std::min(dock.tileSize(), screen_.dockInset - 3 * dockGap);
    const double width = static_cast<double>(dock.tiles().size()) * (side + dockGap) + dockGap;
    const QRectF shelf(
        (screen_.frame.width - width) / 2, screen_.frame.height - side - 2.5 * dockGap, width, side + 2 * dockGap);
    painter.setPen(QColor(255, 255, 255, 90));
    painter.setBrush(QColor(236, 238, 244, 150));
    painter.drawRoundedRect(shelf, 14, 14);

    double x = shelf.left() + dockGap;
    for (const auto& tile : dock.tiles()) {
        if (const IconSource* icon = iconOf(tile.label))
            paintIcon(painter, *icon, QRectF(x, shelf.top() + dockGap, side, side));
        x += side + dockGap;
    }
}

const IconSource* DisplayPainter::iconOf(const std::string& tileLabel) const
{
    const auto& applications = world_.applications();
    const auto found = std::find_if(applications.begin(), applications.end(),
        [&](const auto& application) { return application.displayName == tileLabel; });
    return found == applications.end() ? nullptr : world_.iconNamed(found->icon).get();
}

}
