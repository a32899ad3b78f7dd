#include "embedded/WindowContent.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QString>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace embedded {

namespace {

const QColor paper("#fdfdfd");
const QColor pane("#f1f2f5");
const QColor ink("#c3c7cf");
const QColor heading("#5b6270");

/// Lengths of lines of text, as parts of the whole width.
constexpr std::array lineLengths { 0.92, 0.84, 0.97, 0.71, 0.88, 0.42, 0.95, 0.9, 0.63, 0.86, 0.78, 0.31 };

void bar(QPainter& painter, const QRectF& rect, const QColor& color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, std::min(4.0, rect.height() / 2), std::min(4.0, rect.height() / 2));
}

/// Greeked text: one bar a line, down to the end of the area.
void lines(QPainter& painter, const QRectF& area, double spacing, const QColor& color)
{
    std::size_t index = 0;
    for (double y = area.top(); y + 7 < area.bottom(); y += spacing)
        bar(painter, { area.left(), y, area.width() * lineLengths[index++ % lineLengths.size()], 7 }, color);
}

QRectF sidebar(QPainter& painter, const QRectF& area, double width)
{
    painter.fillRect(QRectF(area.left(), area.top(), width, area.height()), pane);
    lines(painter, area.adjusted(18, 22, width - area.width() - 18, -area.height() / 3), 26, ink);
    return area.adjusted(width, 0, 0, 0);
}

void paintPage(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    bar(painter, { area.left() + 28, area.top() + 26, area.width() * 0.4, 14 }, heading);
    lines(painter, area.adjusted(28, 60, -28, -20), 18, ink);
}

void paintBrowser(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    painter.fillRect(QRectF(area.left(), area.top(), area.width(), 38), pane);
    bar(painter, { area.left() + area.width() * 0.2, area.top() + 9, area.width() * 0.6, 20 }, QColor("#e0e3e8"));
    const QRectF picture(area.left() + 36, area.top() + 66, area.width() - 72, area.height() * 0.36);
    QLinearGradient sky(picture.topLeft(), picture.bottomRight());
    sky.setColorAt(0, QColor("#9fd3f5"));
    sky.setColorAt(1, QColor("#a8dcb0"));
    painter.setPen(Qt::NoPen);
    painter.setBrush(sky);
    painter.drawRoundedRect(picture, 8, 8);
    bar(painter, { picture.left(), picture.bottom() + 22, picture.width() * 0.5, 16 }, heading);
    lines(painter, area.adjusted(36, picture.bottom() - area.top() + 56, -36, -16), 18, ink);
}

void paintMail(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    const QRectF rest = sidebar(painter, area, std::min(170.0, area.width() * 0.22));
    const double listWidth = std::min(260.0, rest.width() * 0.4);
    std::size_t index = 0;
    for (double y = rest.top() + 14; y + 52 < rest.bottom(); y += 62, ++index) {
        if (index == 0)
            bar(painter, { rest.left() + 8, y - 4, listWidth - 16, 54 }, QColor("#d6e6fb"));
        const double length = lineLengths[index % lineLengths.size()];
        bar(painter, { rest.left() + 22, y + 6, (listWidth - 60) * length, 9 }, heading);
        bar(painter, { rest.left() + 22, y + 24, listWidth - 60, 6 }, ink);
        bar(painter, { rest.left() + 22, y + 35, (listWidth - 60) * 0.7, 6 }, ink);
    }
    paintPage(painter, rest.adjusted(listWidth, 0, 0, 0));
}

void paintTerminal(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, QColor("#1b2028"));
    QFont font("monospace");
    font.setPixelSize(13);
    painter.setFont(font);
    static const std::array<const char*, 7> text { "$ make garden", "  [1/4] turning the soil", "  [2/4] sowing",
        "  [3/4] watering", "  [4/4] waiting", "garden is up to date", "$ _" };
    double y = area.top() + 24;
    for (const char* line : text) {
        painter.setPen(*line == '$' ? QColor("#8be28f") : QColor("#cfd6e2"));
        painter.drawText(QPointF(area.left() + 14, y), line);
        y += 19;
    }
}

void paintEditor(QPainter& painter, const QRectF& area)
{
    static const std::array<QColor, 4> colors { QColor("#8aa9e6"), QColor("#d69ac5"), QColor("#9ac79a"), ink };
    painter.fillRect(area, paper);
    painter.fillRect(QRectF(area.left(), area.top(), 44, area.height()), pane);
    std::size_t index = 0;
    for (double y = area.top() + 18; y + 8 < area.bottom(); y += 20, ++index) {
        bar(painter, { area.left() + 18, y, 12, 6 }, ink);
        const double indent = static_cast<double>(index % 5 % 3) * 24;
        const double length = (area.width() - 160) * lineLengths[index % lineLengths.size()] * 0.6;
        bar(painter, { area.left() + 60 + indent, y, length * 0.4, 7 }, colors[index % colors.size()]);
        bar(painter, { area.left() + 68 + indent + length * 0.4, y, length * 0.6, 7 }, ink);
    }
}

void paintChat(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    std::size_t index = 0;
    for (double y = area.top() + 22; y + 34 < area.bottom() - 50; y += 48, ++index) {
        const bool isOwn = index % 3 == 1;
        const double width = area.width() * 0.6 * lineLengths[index % lineLengths.size()];
        const double x = isOwn ? area.right() - width - 20 : area.left() + 20;
        painter.setPen(Qt::NoPen);
        painter.setBrush(isOwn ? QColor("#6fb6f7") : QColor("#e6e8ec"));
        painter.drawRoundedRect(QRectF(x, y, width, 34), 16, 16);
    }
    bar(painter, { area.left() + 20, area.bottom() - 40, area.width() - 40, 24 }, pane);
}

/// A grid of tiles with a margin of 24 and a gap of 16.
template <class Tile>
void grid(const QRectF& area, double side, Tile tile)
{
    int index = 0;
    for (double y = area.top() + 24; y + side < area.bottom(); y += side + 28) {
        for (double x = area.left() + 24; x + side < area.right(); x += side + 16)
            tile(QRectF(x, y, side, side), index++);
    }
}

void paintAlbums(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    grid(sidebar(painter, area, std::min(160.0, area.width() * 0.24)), 110, [&](const QRectF& tile, int index) {
        bar(painter, tile, QColor::fromHsv(index * 47 % 360, 110, 225));
        bar(painter, { tile.left(), tile.bottom() + 8, tile.width() * 0.7, 7 }, ink);
    });
}

void paintFolder(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    grid(sidebar(painter, area, std::min(150.0, area.width() * 0.24)), 72, [&](const QRectF& tile, int) {
        bar(painter, { tile.left() + 8, tile.top() + 10, 24, 14 }, QColor("#6fb1f2"));
        bar(painter, tile.adjusted(8, 16, -8, -8), QColor("#86c2fa"));
        bar(painter, { tile.left() + 12, tile.bottom() + 2, tile.width() - 24, 6 }, ink);
    });
}

void paintCalendar(QPainter& painter, const QRectF& area)
{
    painter.fillRect(area, paper);
    const double width = (area.width() - 40) / 7;
    const double height = (area.height() - 40) / 5;
    for (int day = 0; day < 35; ++day) {
        const QRectF cell(
            area.left() + 20 + width * (day % 7), area.top() + 20 + height * std::floor(day / 7), width, height);
        painter.setPen(QColor("#e4e6ea"));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(cell);
        bar(painter, { cell.left() + 8, cell.top() + 8, 14, 6 }, ink);
        if (day % 4 == 1)
            bar(painter, { cell.left() + 8, cell.top() + 24, width - 16, 14 },
                QColor::fromHsv(day * 53 % 360, 80, 240));
    }
}

}

void paintContent(QPainter& painter, const QRectF& area, const std::optional<std::string>& icon)
{
    using Paint = void (*)(QPainter&, const QRectF&);
    static const std::map<std::string, Paint> paints { { "browser", paintBrowser }, { "calendar", paintCalendar },
        { "chat", paintChat }, { "editor", paintEditor }, { "finder", paintFolder }, { "mail", paintMail },
        { "music", paintAlbums }, { "photos", paintAlbums }, { "terminal", paintTerminal } };
    const auto paint = paints.find(icon.value_or(std::string()));
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    (paint == paints.end() ? paintPage : paint->second)(painter, area);
    painter.restore();
}

}
