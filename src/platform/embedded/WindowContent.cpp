#include "embedded/WindowContent.h"

#include "embedded/Art.h"

#include <QPainter>
#include <QSvgRenderer>

#include <map>

namespace embedded {

namespace {

/// The drawings that are shown for other icons than that of their own name.
const std::map<std::string, std::string> others { { "finder", "folder" }, { "music", "albums" },
    { "photos", "albums" } };

std::string drawingFor(const std::string& icon)
{
    const auto other = others.find(icon);
    const std::string& name = other == others.end() ? icon : other->second;
    return Art::read("windows/" + name + ".svg").value_or(Art::read("windows/page.svg").value_or(""));
}

}

void paintContent(QPainter& painter, const QRectF& area, const std::optional<std::string>& icon)
{
    QSvgRenderer drawing(QByteArray::fromStdString(drawingFor(icon.value_or("page"))));
    const QSizeF size = drawing.defaultSize();
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    painter.fillRect(area, QColor("#fdfdfd"));
    drawing.render(&painter, QRectF(area.topLeft(), size * (area.width() / size.width())));
    painter.restore();
}

}
