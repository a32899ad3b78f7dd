#include "appkit/NSFont.h"

#include "appkit/Fonts.h"
#include "appkit/NSGraphicsContext.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>

#include <map>
#include <utility>

const QFont& toolkitFont(const NSFont& font)
{
    static const QFont system = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    static std::map<std::pair<double, NSFontWeight>, QFont> fonts;
    const auto [place, isNew] = fonts.try_emplace({ font.pointSize(), font.weight() }, system);
    if (isNew) {
        // A point of the program is a pixel of the toolkit.
        place->second.setPixelSize(static_cast<int>(font.pointSize() + 0.5));
        const std::pair<NSFontWeight, QFont::Weight> weights[] = { { NSFontWeight::regular, QFont::Normal },
            { NSFontWeight::medium, QFont::Medium }, { NSFontWeight::semibold, QFont::DemiBold } };
        for (const auto& [ours, theirs] : weights)
            if (ours == font.weight())
                place->second.setWeight(theirs);
    }
    return place->second;
}

double NSFont::ascender() const
{
    return QFontMetricsF(toolkitFont(*this)).ascent();
}

double NSFont::descender() const
{
    return -QFontMetricsF(toolkitFont(*this)).descent();
}

double NSFont::leading() const
{
    return QFontMetricsF(toolkitFont(*this)).leading();
}

CGSize sizeWithAttributes(std::string_view text, const NSFont& font)
{
    const QFontMetricsF metrics(toolkitFont(font));
    const QString string = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return { metrics.horizontalAdvance(string), metrics.height() };
}

void drawAtPoint(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color)
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->drawText(text, point, font, color);
}
