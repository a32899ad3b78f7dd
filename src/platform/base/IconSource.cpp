#include "base/IconSource.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <algorithm>

namespace {

/// The format without what the picture doesn't use: an alpha channel costs room and time.
QImage plainest(const QImage& picture)
{
    const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
    const bool isOpaque = std::all_of(
        pixels, pixels + picture.width() * picture.height(), [](QRgb pixel) { return qAlpha(pixel) == 255; });
    return picture.convertToFormat(isOpaque ? QImage::Format_RGB888 : QImage::Format_ARGB32);
}

}

std::shared_ptr<const IconSource> IconSource::pack(const std::uint32_t* argb, int width, int height)
{
    const QImage picture(reinterpret_cast<const uchar*>(argb), width, height, QImage::Format_ARGB32_Premultiplied);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    // The least effort: more saves little of a thumbnail and takes several times as long.
    writer.setCompression(10);
    if (!writer.write(plainest(picture)))
        return nullptr;
    return std::make_shared<const IconSource>(IconSource { Packed { { bytes.begin(), bytes.end() } } });
}
