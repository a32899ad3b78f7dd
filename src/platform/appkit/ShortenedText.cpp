#include "appkit/ShortenedText.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

namespace {

/// The lengths of the beginnings of a text that end between two characters, shortest first.
std::vector<qsizetype> beginnings(const QString& text)
{
    std::vector<qsizetype> lengths;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0)
        lengths.push_back(finder.position());
    return lengths;
}

}

std::string shortenedText(std::string_view text, const NSFont& font, double width, std::size_t least)
{
    if (sizeWithAttributes(text, font).width <= width)
        return std::string(text);
    const QString whole = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const auto shortened = [&](qsizetype length) { return whole.left(length).toStdString() + "…"; };
    const std::vector<qsizetype> lengths = beginnings(whole);
    const auto first
        = lengths.begin() + static_cast<std::ptrdiff_t>(std::min(std::max<std::size_t>(least, 1), lengths.size()) - 1);
    const auto tooWide = std::partition_point(std::next(first), lengths.end(),
        [&](qsizetype length) { return sizeWithAttributes(shortened(length), font).width <= width; });
    return shortened(*std::prev(tooWide));
}
