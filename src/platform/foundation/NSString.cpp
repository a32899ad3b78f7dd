#include "foundation/NSString.h"

#include <QCollator>
#include <QString>

#include <algorithm>
#include <iterator>

namespace {

QString toolkitString(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

bool isWhitespace(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

}

NSComparisonResult localizedCaseInsensitiveCompare(std::string_view a, std::string_view b)
{
    static const QCollator collator = [] {
        // Without a language there is still a better order than that of the characters' numbers.
        const bool hasLanguage = QLocale().language() != QLocale::C;
        QCollator insensitive(hasLanguage ? QLocale() : QLocale(QLocale::English));
        insensitive.setCaseSensitivity(Qt::CaseInsensitive);
        return insensitive;
    }();
    const int order = collator.compare(toolkitString(a), toolkitString(b));
    if (order == 0)
        return NSComparisonResult::orderedSame;
    return order < 0 ? NSComparisonResult::orderedAscending : NSComparisonResult::orderedDescending;
}

std::string lowercaseString(std::string_view text)
{
    return toolkitString(text).toLower().toStdString();
}

std::string stringByTrimmingWhitespaces(std::string_view text)
{
    const QString whole = toolkitString(text);
    const auto first = std::find_if_not(whole.begin(), whole.end(), isWhitespace);
    const auto last = std::find_if_not(whole.rbegin(), std::make_reverse_iterator(first), isWhitespace).base();
    return QString(first, last - first).toStdString();
}
