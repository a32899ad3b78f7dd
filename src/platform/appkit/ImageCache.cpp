#include "appkit/ImageCache.h"

#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"
#include "appkit/NSImage.h"
#include "base/IconSource.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>

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

template <class Key>
class Cache {
public:
    template <class Make>
    QPixmap get(const Key& key, const Make& make)
    {
        const auto known = pixmaps_.find(key);
        if (known != pixmaps_.end())
            return known->second;
        // Far more than one bar shows at once; starting over is cheaper than keeping account of use.
        if (bytes_ > mostBytes)
            clear();
        QPixmap pixmap = QPixmap::fromImage(make());
        bytes_ += overhead + pixmap.width() * pixmap.height() * pixmap.depth() / 8;
        return pixmaps_.emplace(key, std::move(pixmap)).first->second;
    }

private:
    static constexpr long long mostBytes = 6'000'000;
    /// What there is to an entry beside its pixels, about: pictures that can't be read count too.
    static constexpr long long overhead = 200;

    void clear()
    {
        pixmaps_.clear();
        bytes_ = 0;
    }

    long long bytes_ = 0;
    std::map<Key, QPixmap> pixmaps_;
};

QPixmap iconPixmap(const std::shared_ptr<const IconSource>& icon, QSize size)
{
    /// The owner is compared, not the address: another icon may come to lie where one has gone.
    struct Key {
        std::weak_ptr<const IconSource> icon;
        int width;
        int height;
        bool operator<(const Key& other) const
        {
            if (icon.owner_before(other.icon) != other.icon.owner_before(icon))
                return icon.owner_before(other.icon);
            return std::tie(width, height) < std::tie(other.width, other.height);
        }
    };
    static Cache<Key> cache;
    return cache.get({ icon, size.width(), size.height() },
        [&] { return std::visit([&](const auto& content) { return render(content, size); }, icon->content); });
}

QPixmap symbolPixmap(const NSImage::Symbol& symbol, QSize size)
{
    static Cache<std::tuple<std::string, int, int>> cache;
    return cache.get({ symbol.name, size.width(), size.height() }, [&] {
        QSvgRenderer renderer(QString::fromStdString(":/symbols/" + symbol.name + ".svg"));
        return renderSvg(renderer, size);
    });
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
        return symbolPixmap(*image.symbol(), size);
    return image.drawing() ? drawingPixmap(*image.drawing(), size) : QPixmap();
}
