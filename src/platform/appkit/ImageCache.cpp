#include "appkit/ImageCache.h"

#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"
#include "appkit/NSImage.h"
#include "base/IconSource.h"

#include <QCache>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace {

QImage clearImage(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage renderSvg(QSvgRenderer& renderer, QSize size)
{
    QImage image = clearImage(size);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

/// Scaled to fit and centred.
QImage fitted(const QImage& picture, QSize size)
{
    if (picture.isNull() || picture.size() == size)
        return picture;
    const QImage scaled = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage image = clearImage(size);
    QPainter painter(&image);
    painter.drawImage((size.width() - scaled.width()) / 2, (size.height() - scaled.height()) / 2, scaled);
    return image;
}

QImage render(const IconSource::Svg& svg, QSize size)
{
    QSvgRenderer renderer(QByteArray::fromStdString(svg.text));
    return renderer.isValid() ? renderSvg(renderer, size) : QImage();
}

QImage render(const IconSource::File& file, QSize size)
{
    const QString path = QString::fromStdString(file.path);
    QImageReader reader(path);
    if (!path.endsWith(".svg") && !path.endsWith(".svgz"))
        return fitted(reader.read(), size);
    QSvgRenderer renderer(path);
    return renderer.isValid() ? renderSvg(renderer, size) : QImage();
}

/// Of several sizes the smallest that is large enough, else the largest.
QImage render(const std::vector<IconSource::Pixels>& sizes, QSize size)
{
    const auto better = [&](const IconSource::Pixels& a, const IconSource::Pixels& b) {
        const bool aFits = a.width >= size.width();
        const bool bFits = b.width >= size.width();
        if (aFits != bFits)
            return aFits;
        return aFits ? a.width < b.width : a.width > b.width;
    };
    const auto best = std::min_element(sizes.begin(), sizes.end(), better);
    if (best == sizes.end())
        return {};
    const auto* bytes = reinterpret_cast<const uchar*>(best->argb.data());
    return fitted(QImage(bytes, best->width, best->height, QImage::Format_ARGB32), size);
}

QImage render(const IconSource::Packed& packed, QSize size)
{
    return fitted(QImage::fromData(packed.bytes.data(), static_cast<int>(packed.bytes.size())), size);
}

QImage render(const IconSource::Deferred& deferred, QSize size)
{
    const auto found = deferred.find();
    if (!found || std::holds_alternative<IconSource::Deferred>(found->content))
        return {};
    return std::visit([&](const auto& content) { return render(content, size); }, found->content);
}

/// A bundled symbol: one object for one picture, as icons have it.
std::shared_ptr<const IconSource> symbolSource(const std::string& name)
{
    static std::map<std::string, std::shared_ptr<const IconSource>> sources;
    auto& source = sources[name];
    if (!source)
        source = std::make_shared<IconSource>(IconSource { IconSource::File { ":/symbols/" + name + ".svg" } });
    return source;
}

struct Kept {
    std::weak_ptr<const IconSource> icon;
    QPixmap pixmap;
};

QPixmap iconPixmap(const std::shared_ptr<const IconSource>& icon, QSize size)
{
    /// Far more than one bar shows at once.
    constexpr qsizetype mostBytes = 6'000'000;
    /// What there is to an entry beside its pixels, about: pictures that can't be read count too.
    constexpr qsizetype overhead = 200;
    using Key = std::pair<const IconSource*, std::pair<int, int>>;
    static QCache<Key, Kept> cache(mostBytes);

    const Key key { icon.get(), { size.width(), size.height() } };
    // Another icon may have come to lie where one has gone.
    if (const Kept* known = cache.object(key); known && !known->icon.expired())
        return known->pixmap;
    const QPixmap pixmap
        = QPixmap::fromImage(std::visit([&](const auto& content) { return render(content, size); }, icon->content));
    const qsizetype bytes = pixmap.width() * pixmap.height() * pixmap.depth() / 8;
    cache.insert(key, new Kept { icon, pixmap }, overhead + bytes);
    return pixmap;
}

QPixmap drawingPixmap(const NSImage::Drawing& drawing, QSize size)
{
    QImage image = clearImage(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / drawing.size.width, size.height() / drawing.size.height);
    DrawingPainter context(painter, drawing.size, drawing.flipped);
    drawing.list->replay(context);
    painter.end();
    return QPixmap::fromImage(image);
}

}

QPixmap ImageCache::pixmap(const NSImage& image, QSize size)
{
    if (size.isEmpty())
        return {};
    if (image.icon())
        return iconPixmap(image.icon(), size);
    if (image.symbol())
        return iconPixmap(symbolSource(image.symbol()->name), size);
    return image.drawing() ? drawingPixmap(*image.drawing(), size) : QPixmap();
}
