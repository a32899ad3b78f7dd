#include "bar/Metrics.h"

#include <gtest/gtest.h>

namespace {

TEST(MetricsTest, EachSizeClassHasItsWholePoints)
{
    struct Row {
        const char* name;
        double (Metrics::*size)() const;
        double small, medium, large;
    };
    const Row rows[] = {
        { "barHeight", &Metrics::barHeight, 43, 52, 63 },
        { "edgePadding", &Metrics::edgePadding, 7, 8, 10 },
        { "searchWidth", &Metrics::searchWidth, 131, 160, 195 },
        { "searchHeight", &Metrics::searchHeight, 21, 26, 32 },
        { "searchRadius", &Metrics::searchRadius, 5, 6, 7 },
        { "pillInset", &Metrics::pillInset, 3, 4, 5 },
        { "pillRadius", &Metrics::pillRadius, 7, 9, 11 },
        { "indicatorWidth", &Metrics::indicatorWidth, 13, 16, 20 },
        { "indicatorHeight", &Metrics::indicatorHeight, 2, 3, 4 },
        { "separatorWidth", &Metrics::separatorWidth, 12, 15, 18 },
        { "trashWidth", &Metrics::trashWidth, 38, 46, 56 },
        { "itemWidth", &Metrics::itemWidth, 38, 46, 56 },
        { "iconSize", &Metrics::iconSize, 21, 26, 32 },
        { "searchFont", &Metrics::searchFont, 10, 12, 15 },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ((Metrics(BarSize::small).*row.size)(), row.small);
        EXPECT_EQ((Metrics(BarSize::medium).*row.size)(), row.medium);
        EXPECT_EQ((Metrics(BarSize::large).*row.size)(), row.large);
    }
}

}
