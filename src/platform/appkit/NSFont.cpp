#include "appkit/NSFont.h"

#include "appkit/Fonts.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/Pixels.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>

#include <map>
#include <tuple>
#include <utility>

const QFont& toolkitFont(const NSFont& font)
{
    return toolkitFont(font, Pixels::scale());
}

const QFont& toolkitFont(const NSFont& font, double scale)
{
    static const QFont system = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    static std::map<std::tuple<double, NSFontWeight, double>, QFont> fonts;
    const auto [place, isNew] = fonts.try_emplace({ font.pointSize(), font.weight(), scale }, system);
    if (isNew) {
        place->second.setPixelSize(static_cast<int>(font.pointSize() * scale + 0.5));
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
    return QFontMetricsF(toolkitFont(*this)).ascent() / Pixels::scale();
}

double NSFont::descender() const
{
    return -QFontMetricsF(toolkitFont(*this)).descent() / Pixels::scale();
}

double NSFont::leading() const
{
    return QFontMetricsF(toolkitFont(*this)).leading() / Pixels::scale();
}

CGSize sizeWithAttributes(std::string_view text, const NSFont& font)
{
    const double scale = Pixels::scale();
    const QFontMetricsF metrics(toolkitFont(font, scale));
    const QString string = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return { metrics.horizontalAdvance(string) / scale, metrics.height() / scale };
}

void drawAtPoint(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color)
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->drawText(text, point, font, color);
}
