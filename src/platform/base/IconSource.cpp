#include "base/IconSource.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <algorithm>

namespace {

/// Of 100. A thumbnail of text is told from the original by nobody, and takes a quarter of the room.
constexpr int quality = 92;

bool isOpaque(const QImage& picture)
{
    const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
    return std::all_of(
        pixels, pixels + picture.width() * picture.height(), [](QRgb pixel) { return qAlpha(pixel) == 255; });
}

}

std::shared_ptr<const IconSource> IconSource::pack(const std::uint32_t* argb, int width, int height)
{
    const QImage picture(reinterpret_cast<const uchar*>(argb), width, height, QImage::Format_ARGB32_Premultiplied);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, isOpaque(picture) ? "jpg" : "png");
    if (writer.format() == "jpg")
        writer.setQuality(quality);
    if (!writer.write(picture))
        return nullptr;
    return std::make_shared<const IconSource>(IconSource { Packed { { bytes.begin(), bytes.end() } } });
}
