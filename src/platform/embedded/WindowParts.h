#pragma once

#include <QRectF>

#include <array>

namespace embedded {

/// Where the parts of a window of this frame lie; any coordinates with y down.
struct WindowParts {
    static constexpr double titleBarHeight = 28;
    static constexpr double lightSize = 12;

    enum Light { close, minimise, fullScreen };

    QRectF titleBar;
    QRectF content;
    /// Close, minimise, full screen.
    std::array<QRectF, 3> lights;

    explicit WindowParts(const QRectF& frame)
        : titleBar(frame.left(), frame.top(), frame.width(), titleBarHeight)
        , content(frame.adjusted(0, titleBarHeight, 0, 0))
    {
        const double inset = (titleBarHeight - lightSize) / 2;
        for (std::size_t index = 0; index < lights.size(); ++index)
            lights[index] = QRectF(
                frame.left() + inset + static_cast<double>(index) * 20, frame.top() + inset, lightSize, lightSize);
    }
};

}
