#include "bar/BarLayout.h"

#include <gtest/gtest.h>

namespace {

using enum BarComponent;
const std::vector<BarComponent> everything { launcher, search, showDesktop, finder, apps, trash };

/// Of medium size.
BarLayout bar(double width, int buttons, const std::vector<BarComponent>& components = everything)
{
    const Metrics metrics(BarSize::medium);
    return BarLayout({ width, metrics.barHeight() }, metrics, components, buttons);
}

TEST(BarLayoutTest, AreaOfTheButtonsHugsThemAsFarAsThereIsRoom)
{
    const struct {
        const char* what;
        double width;
        int buttons;
        double areaWidth;
    } rows[] {
        { "no button", 1400, 0, 46 },
        { "one button", 1400, 1, 46 },
        { "all the room", 1400, 22, 1000 },
        { "more buttons than room", 1400, 60, 1000 },
        { "no room at all", 300, 5, 46 },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const BarLayout layout = bar(row.width, row.buttons);
        EXPECT_EQ(layout.rect(apps), (CGRect { 338, 0, row.areaWidth, 52 }));
        EXPECT_EQ(layout.rect(trash).x, 338 + row.areaWidth + 8);
        EXPECT_EQ(layout.leadingSeparatorX(), 330.5);
        EXPECT_EQ(layout.trailingSeparatorX(), 338 + row.buttons * 46 + 7.5) << "not at the end of the area";
        EXPECT_EQ(layout.magnifierBox(), (CGRect { 70, 19, 14, 14 }));
        const CGRect field = layout.searchFieldRect();
        EXPECT_EQ(field.x, 90);
        EXPECT_EQ(field.maxX(), 211);
        EXPECT_EQ(field.midY(), 26);
    }
    EXPECT_EQ(bar(1400, 5, { apps }).searchFieldRect().width, 20) << "without a box";
}

TEST(BarLayoutTest, CapacityIsWhatFitsWhateverIsThereNow)
{
    const struct {
        const char* what;
        double width;
        std::vector<BarComponent> components;
        int capacity;
    } rows[] {
        { "one point short of 22", 1418, everything, 21 },
        { "just 22", 1419, everything, 22 },
        { "without the Trash its room is free", 1400, { launcher, search, showDesktop, finder, apps }, 22 },
        { "the Trash takes its room in front too", 1400, { trash, apps }, 27 },
        { "a bar narrower than its components", 100, everything, 1 },
    };
    for (const auto& row : rows)
        for (const int buttons : { 5, 50 })
            EXPECT_EQ(bar(row.width, buttons, row.components).buttonCapacity(), row.capacity) << row.what;
}

TEST(BarLayoutTest, PointIsOverTheFirstThatHoldsIt)
{
    const struct {
        const char* what;
        int buttons;
        CGPoint point;
        std::optional<int> hit;
    } rows[] {
        { "left edge of the launcher", 5, { 8, 0 }, BarHit::launcher },
        { "left of everything", 5, { 7.9, 20 }, std::nullopt },
        { "over the search box", 5, { 100, 39 }, std::nullopt },
        { "buttons touch", 5, { 384, 20 }, 1 },
        { "an empty area", 0, { 350, 20 }, std::nullopt },
        { "a button under the Trash", 60, { 1350, 20 }, BarHit::trash },
        { "a button past the end of the area", 60, { 1396, 20 }, 23 },
    };
    for (const auto& row : rows)
        EXPECT_EQ(bar(1400, row.buttons).hit(row.point), row.hit) << row.what;
}

}
