#include "appkit/ProgramIcon.h"

#include "appkit/ImageCache.h"
#include "appkit/NSImage.h"
#include "base/IconSource.h"

#include <QIcon>
#include <QPixmap>

/// Linked in from a static library, as the symbols are.
static void loadIcon()
{
    Q_INIT_RESOURCE(vantry);
}

namespace {

QIcon made()
{
    loadIcon();
    const NSImage image(std::make_shared<IconSource>(IconSource { IconSource::File { ":/vantry.svg" } }));
    QIcon icon;
    for (const int side : { 16, 24, 32, 48, 64, 128 })
        icon.addPixmap(ImageCache::pixmap(image, { side, side }));
    return icon;
}

}

const QIcon& programIcon()
{
    static const QIcon icon = made();
    return icon;
}
