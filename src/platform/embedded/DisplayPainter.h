#pragma once

#include <QImage>
#include <QRectF>

#include <cstddef>

class QPainter;
struct IconSource;

namespace embedded {

class World;
struct Screen;
struct Window;

/// Paints what is on a display, all but the program's panels: wallpaper, windows, menu bar and Dock. Main thread.
class DisplayPainter {
public:
    DisplayPainter(const World& world, std::size_t screen);

    /// In points of the display, one a pixel.
    QImage picture() const;
    /// One window, whatever lies over it, at another size.
    QImage picture(const Window& window, QSize size) const;

    /// Where a window lies in the picture.
    QRectF frameOf(const Window& window) const;
    /// The foremost window that shows at a point of the picture; null where there is none.
    const Window* windowAt(const QPointF& point) const;

private:
    bool shows(const Window& window) const;
    void paintWindow(QPainter& painter, const Window& window) const;
    void paintFrame(QPainter& painter, const Window& window, const QRectF& frame) const;
    void paintTyped(QPainter& painter, const Window& window, const QRectF& area) const;
    void paintMenuBar(QPainter& painter) const;
    void paintDock(QPainter& painter) const;
    const IconSource* iconOf(const std::string& tileLabel) const;

    const World& world_;
    const Screen& screen_;
};

}
