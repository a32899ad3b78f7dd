#pragma once

#include "appkit/NSView.h"

#include <memory>

class QImage;

/// A picture of a view, with a pixel a point. Main thread.
class NSBitmapImageRep {
public:
    /// Draws the view and those in it.
    explicit NSBitmapImageRep(NSView& view);
    ~NSBitmapImageRep();

    int pixelsWide() const;
    int pixelsHigh() const;
    /// From the upper left corner; it must lie in the picture. From 0 to 1.
    double alphaAt(int x, int y) const;

private:
    std::unique_ptr<QImage> image_;
};
