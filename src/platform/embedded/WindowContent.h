#pragma once

#include <QRectF>

#include <optional>
#include <string>

class QPainter;

namespace embedded {

/// Paints what an application of this icon might show in a window.
void paintContent(QPainter& painter, const QRectF& area, const std::optional<std::string>& icon);

}
