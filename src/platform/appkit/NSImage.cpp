#include "appkit/NSImage.h"

#include "appkit/DrawingList.h"
#include "appkit/NSGraphicsContext.h"
#include "capture/SCScreenshotManager.h"

#include <QFile>

/// The symbols are linked in from a static library, which takes this call; it can't stand in a namespace.
static void loadSymbols()
{
    Q_INIT_RESOURCE(symbols);
}

namespace {
constexpr CGSize iconSize { 32, 32 };
constexpr NSImageSymbolConfiguration defaultConfiguration { 13, NSFontWeight::regular };
}

NSImage::NSImage() = default;

NSImage::NSImage(std::shared_ptr<const IconSource> icon)
    : icon_(std::move(icon))
{
}

NSImage::NSImage(const CGImage& image, CGSize size)
    : icon_(image.content)
    , size_(size)
{
}

std::optional<NSImage> NSImage::imageWithSystemSymbolName(const std::string& name, const std::string& description)
{
    [[maybe_unused]] static const bool loaded = (loadSymbols(), true);
    if (!QFile::exists(QString::fromStdString(":/symbols/" + name + ".svg")))
        return std::nullopt;
    NSImage image;
    image.symbol_ = Symbol { name, defaultConfiguration };
    image.description_ = description;
    return image;
}

NSImage NSImage::imageWithSize(CGSize size, bool flipped, const std::function<bool(CGRect)>& handler)
{
    DrawingRecorder recorder;
    {
        const NSGraphicsContext::Scope scope(recorder);
        handler({ 0, 0, size.width, size.height });
    }
    NSImage image;
    image.drawing_ = Drawing { size, flipped, std::make_shared<const DrawingList>(std::move(recorder.list)) };
    return image;
}

NSImage NSImage::imageWithSymbolConfiguration(const NSImageSymbolConfiguration& configuration) const
{
    NSImage image = *this;
    if (image.symbol_)
        image.symbol_->configuration = configuration;
    return image;
}

CGSize NSImage::size() const
{
    if (size_)
        return *size_;
    if (drawing_)
        return drawing_->size;
    // The glyphs are drawn in a square box a quarter larger than the point size, as the text they stand beside.
    if (symbol_)
        return { symbol_->configuration.pointSize * 1.25, symbol_->configuration.pointSize * 1.25 };
    return icon_ ? iconSize : CGSize {};
}

void NSImage::drawInRect(const CGRect& rect, double fraction) const
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->drawImage(*this, rect, fraction);
}

bool NSImage::operator==(const NSImage& other) const
{
    return icon_ == other.icon_ && symbol_ == other.symbol_ && drawing_ == other.drawing_;
}

bool NSImage::Drawing::operator==(const Drawing& other) const
{
    return size == other.size && flipped == other.flipped && (list == other.list || *list == *other.list);
}
