#include "bar/BarLayout.h"

#include "appkit/NSFont.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using enum BarComponent;
const std::vector<BarComponent> everything { launcher, search, showDesktop, finder, apps, trash };

BarLayout bar(
    double width, int buttons, const std::vector<BarComponent>& components = everything, BarSize size = BarSize::medium)
{
    const Metrics metrics(size);
    return BarLayout({ width, metrics.barHeight() }, metrics, components, buttons);
}

TEST(BarLayoutTest, ComponentsFollowEachOther)
{
    struct Row {
        BarComponent component;
        CGRect rect;
    };
    const Row rows[] = {
        { launcher, { 8, 0, 46, 52 } },
        { search, { 62, 13, 160, 26 } },
        { showDesktop, { 230, 0, 46, 52 } },
        { finder, { 284, 0, 46, 52 } },
        { apps, { 338, 0, 230, 52 } },
        { trash, { 576, 0, 46, 52 } },
    };
    for (const Row& row : rows)
        EXPECT_EQ(bar(1400, 5).rect(row.component), row.rect) << static_cast<int>(row.component);
}

TEST(BarLayoutTest, HiddenComponentIsNowhereAndTheOthersCloseTheGap)
{
    const BarLayout layout = bar(1400, 5, { launcher, showDesktop, apps, trash });
    EXPECT_EQ(layout.rect(search), CGRect());
    EXPECT_EQ(layout.rect(finder), CGRect());
    EXPECT_FALSE(layout.shows(search));
    EXPECT_EQ(layout.rect(showDesktop), (CGRect { 62, 0, 46, 52 }));
    EXPECT_EQ(layout.rect(apps), (CGRect { 116, 0, 230, 52 }));
    EXPECT_EQ(layout.hit({ 0, 0 }), std::nullopt) << "a hidden component's place holds no point";
}

TEST(BarLayoutTest, AreaOfTheButtonsHugsThemAsFarAsThereIsRoom)
{
    struct Row {
        const char* what;
        double width;
        int buttons;
        double areaWidth;
    };
    const Row rows[] = {
        { "no button", 1400, 0, 46 },
        { "one button", 1400, 1, 46 },
        { "all the room", 1400, 22, 1000 },
        { "more buttons than room", 1400, 60, 1000 },
        { "no room at all", 300, 5, 46 },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const BarLayout layout = bar(row.width, row.buttons);
        EXPECT_EQ(layout.rect(apps), (CGRect { 338, 0, row.areaWidth, 52 }));
        EXPECT_EQ(layout.rect(trash).x, 338 + row.areaWidth + 8);
    }
}

TEST(BarLayoutTest, WhatStandsBehindTheButtonsMovesWithTheirNumber)
{
    const std::vector<BarComponent> order { apps, launcher };
    EXPECT_EQ(bar(1400, 2, order).rect(apps).x, 8);
    EXPECT_EQ(bar(1400, 2, order).rect(launcher).x, 8 + 2 * 46 + 8);
    EXPECT_EQ(bar(1400, 3, order).rect(launcher).x, 8 + 3 * 46 + 8);
}

TEST(BarLayoutTest, CapacityIsWhatFitsWhateverIsThereNow)
{
    struct Row {
        const char* what;
        double width;
        std::vector<BarComponent> components;
        int capacity;
    };
    const Row rows[] = {
        { "everything", 1400, everything, 21 },
        { "one point short of 22", 1418, everything, 21 },
        { "just 22", 1419, everything, 22 },
        { "without the Trash its room is free", 1400, { launcher, search, showDesktop, finder, apps }, 22 },
        { "the Trash takes its room in front too", 1400, { trash, apps }, 27 },
        { "a narrow bar", 400, everything, 1 },
        { "a bar narrower than its components", 100, everything, 1 },
    };
    for (const Row& row : rows) {
        EXPECT_EQ(bar(row.width, 5, row.components).buttonCapacity(), row.capacity) << row.what;
        EXPECT_EQ(bar(row.width, 50, row.components).buttonCapacity(), row.capacity) << row.what;
    }
}

TEST(BarLayoutTest, DraggedButtonLandsInTheCellUnderThePointer)
{
    struct Row {
        double x;
        int place;
    };
    // Cells begin at 338, 46 points each.
    const Row rows[] = { { -1'000'000, 0 }, { 338, 0 }, { 383.9, 0 }, { 384, 1 }, { 429.9, 1 }, { 430, 2 }, { 560, 4 },
        { 2000, 5 }, { 1e300, 5 } };
    for (const Row& row : rows)
        EXPECT_EQ(bar(1400, 6).insertionIndex(5, row.x), row.place) << row.x;
    EXPECT_EQ(bar(1400, 1).insertionIndex(0, 2000), 0);
}

TEST(BarLayoutTest, SeparatorsStandBesideTheButtonsWhateverTheirNeighbours)
{
    EXPECT_EQ(bar(1400, 5).leadingSeparatorX(), 330.5);
    EXPECT_EQ(bar(1400, 5).trailingSeparatorX(), 338 + 5 * 46 + 7.5);
    EXPECT_EQ(bar(1400, 60).trailingSeparatorX(), 338 + 60 * 46 + 7.5) << "not at the end of the area";
    EXPECT_EQ(bar(1400, 0, { apps, launcher }).trailingSeparatorX(), 15.5);
}

TEST(BarLayoutTest, SearchTextFillsTheBoxBehindTheMagnifier)
{
    for (const BarSize size : { BarSize::small, BarSize::medium, BarSize::large }) {
        const BarLayout layout = bar(1400, 5, everything, size);
        const CGRect box = layout.rect(search);
        const CGRect field = layout.searchFieldRect();
        const NSFont font = NSFont::systemFont(layout.metrics().searchFont());
        EXPECT_EQ(layout.magnifierBox(), (CGRect { box.x + 8, box.midY() - 7, 14, 14 }));
        EXPECT_EQ(field.x, box.x + 28);
        EXPECT_EQ(field.maxX(), box.maxX() - 11);
        EXPECT_EQ(field.midY(), box.midY());
        EXPECT_EQ(field.height, std::ceil(font.ascender() - font.descender() + font.leading()));
    }
    EXPECT_EQ(bar(1400, 5, { apps }).searchFieldRect().width, 20);
}

TEST(BarLayoutTest, PointIsOverTheFirstThatHoldsIt)
{
    struct Row {
        const char* what;
        int buttons;
        CGPoint point;
        std::optional<int> hit;
    };
    const Row rows[] = {
        { "left edge of the launcher", 5, { 8, 0 }, BarHit::launcher },
        { "right edge of the launcher", 5, { 54, 20 }, std::nullopt },
        { "left of everything", 5, { 7.9, 20 }, std::nullopt },
        { "search box", 5, { 100, 13 }, BarHit::search },
        { "over the search box", 5, { 100, 39 }, std::nullopt },
        { "show desktop", 5, { 250, 51 }, BarHit::showDesktop },
        { "above the bar", 5, { 250, 52 }, std::nullopt },
        { "Finder", 5, { 300, 20 }, BarHit::finder },
        { "gap before the buttons", 5, { 331, 20 }, std::nullopt },
        { "first button", 5, { 338, 20 }, 0 },
        { "buttons touch", 5, { 384, 20 }, 1 },
        { "last button", 5, { 567.9, 20 }, 4 },
        { "gap behind the buttons", 5, { 570, 20 }, std::nullopt },
        { "Trash", 5, { 580, 20 }, BarHit::trash },
        { "spare room", 5, { 1000, 20 }, std::nullopt },
        { "an empty area", 0, { 350, 20 }, std::nullopt },
        { "a button under the Trash", 60, { 1350, 20 }, BarHit::trash },
        { "a button past the end of the area", 60, { 1396, 20 }, 23 },
    };
    for (const Row& row : rows)
        EXPECT_EQ(bar(1400, row.buttons).hit(row.point), row.hit) << row.what;
    EXPECT_EQ(bar(1400, 60).button({ 1350, 20 }), 22) << "the button itself is still there";
}

}
