#pragma once

#include "base/CGGeometry.h"

#include <QImage>
#include <QWidget>

#include <cstdint>
#include <optional>

namespace host {
struct StatusItemFacts;
}

namespace embedded {

class EmbeddedDesktop;

/// One display: what is on it, and a user's hand in it. The program's panels are its children. Main thread.
class DisplayWidget final : public QWidget {
public:
    DisplayWidget(EmbeddedDesktop& desktop, std::size_t screen, QWidget* parent);

    /// The picture of the display is no longer right.
    void sceneChanged();

    /// From the widget's coordinates to screen space.
    /// The pixel's lower left corner.
    CGPoint screenPoint(const QPointF& point) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintBackdrops(QPainter& painter);
    void pressStatusItem(const host::StatusItemFacts& item);
    void press(std::uint32_t window, const QRectF& frame, const QPointF& point);
    void showNeighbourSpace(int step);

    struct Drag {
        std::uint32_t window = 0;
        /// From the window's origin to the pointer.
        QPointF grip;
    };

    EmbeddedDesktop& desktop_;
    std::size_t screen_;
    /// Null when it must be painted anew.
    QImage scene_;
    std::optional<Drag> drag_;
};

}
