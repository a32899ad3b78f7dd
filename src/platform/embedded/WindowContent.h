#pragma once

#include <QRectF>

#include <optional>
#include <string>

class QPainter;

namespace embedded {

/// Paints what an application of this icon might show in a window: a drawing as wide as the area, of which the area
/// shows the upper part.
void paintContent(QPainter& painter, const QRectF& area, const std::optional<std::string>& icon);

}
