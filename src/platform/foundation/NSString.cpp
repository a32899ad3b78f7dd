#include "foundation/NSString.h"

#include <QCollator>
#include <QString>

NSComparisonResult localizedCaseInsensitiveCompare(std::string_view a, std::string_view b)
{
    static const QCollator collator = [] {
        QCollator insensitive;
        insensitive.setCaseSensitivity(Qt::CaseInsensitive);
        return insensitive;
    }();
    const auto text
        = [](std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); };
    const int order = collator.compare(text(a), text(b));
    if (order == 0)
        return NSComparisonResult::orderedSame;
    return order < 0 ? NSComparisonResult::orderedAscending : NSComparisonResult::orderedDescending;
}
