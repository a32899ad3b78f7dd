#pragma once

class NSImage;
class QPixmap;
class QSize;

/// The pixels of an image at a size in device pixels, kept for the next time. Null when it can't be read. For the
/// layer's own use. Main thread.
namespace ImageCache {

QPixmap pixmap(const NSImage& image, QSize size);

}
