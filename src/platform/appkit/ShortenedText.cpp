#include "appkit/ShortenedText.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

namespace {

/// What is looked at of a text, in bytes: more than any panel has room for.
constexpr std::size_t mostBytes = 4096;

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
    const auto fits = [&](std::string_view candidate) { return sizeWithAttributes(candidate, font).width <= width; };
    if (text.size() <= mostBytes && fits(text))
        return std::string(text);

    const auto size = static_cast<qsizetype>(std::min(text.size(), mostBytes));
    const QString whole = QString::fromUtf8(text.data(), size);
    const auto shortened = [&](qsizetype length) { return whole.left(length).toStdString() + "…"; };
    const std::vector<qsizetype> lengths = beginnings(whole);
    const auto shortest = lengths.begin() + static_cast<std::ptrdiff_t>(std::min(least, lengths.size()) - 1);
    const auto tooWide = std::partition_point(
        std::next(shortest), lengths.end(), [&](qsizetype length) { return fits(shortened(length)); });
    return shortened(*std::prev(tooWide));
}
