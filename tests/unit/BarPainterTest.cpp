#include "bar/BarPainter.h"

#include "appkit/NSFont.h"
#include "base/IconSource.h"
#include "unit/DrawingText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace {

using Lines = std::vector<std::string>;
using enum BarComponent;

const std::vector<BarComponent> everything { launcher, search, showDesktop, finder, apps, trash };

NSImage icon()
{
    static const auto source = std::make_shared<const IconSource>(IconSource { IconSource::Svg { "<svg/>" } });
    return NSImage(source);
}

BarItem application(const std::string& name, bool running, bool frontmost = false, int windows = 0)
{
    BarItem item;
    item.name = name;
    item.icon = icon();
    if (running)
        item.pid = 100;
    item.isFrontmost = frontmost;
    item.windowCount = windows;
    return item;
}

/// A blue bar of medium size with a red accent.
BarPicture picture(
    std::vector<BarItem> buttons, const std::vector<BarComponent>& components = { apps }, double width = 400)
{
    const Metrics metrics(BarSize::medium);
    return {
        .layout = BarLayout({ width, 52 }, metrics, components, static_cast<int>(buttons.size())),
        .look = { .style = BarStyle::solid,
            .edge = BarEdge::bottom,
            .tint = NSColor::colorWithSRGBRed(0, 0, 1, 1),
            .opacity = 1,
            .accent = NSColor::colorWithSRGBRed(1, 0, 0, 1),
            .floatingInset = 0,
            .showsPips = true },
        .launcher = std::nullopt,
        .finder = std::nullopt,
        .buttons = std::move(buttons),
        .hovered = std::nullopt,
        .drag = std::nullopt,
    };
}

Lines painted(const BarPicture& picture)
{
    DrawingRecorder recorder;
    const NSGraphicsContext::Scope scope(recorder);
    BarPainter(picture).draw();
    return described(recorder.list);
}

/// What is painted behind the body, the hairline and the separator of a bar with nothing but buttons.
Lines paintedButtons(const BarPicture& picture)
{
    const Lines all = painted(picture);
    return { all.begin() + 3, all.end() };
}

TEST(BarPainterTest, PaintsEverythingInOrder)
{
    BarPicture bar = picture({ application("Mail", true) }, everything, 1400);
    bar.launcher = application("Apps", false);
    bar.finder = application("Finder", true);
    EXPECT_EQ(painted(bar),
        (Lines {
            "fill 0,0 1400x52 r0 0000FF@1",
            "fill 0,51 1400x1 r0 FFFFFF@0.12",
            "icon 18,13 26x26 @1",
            "fill 62,13 160x26 r6 FFFFFF@0.07",
            "stroke 62,13 160x26 r6 FFFFFF@0.13 w1",
            "symbol magnifyingglass 12 FFFFFF@0.55 69.5,18.5 15x15",
            "gradient 242,16 22x22 r5.28 5C9EFA@1 2461DB@1 -90",
            "stroke 242,16 22x22 r5.28 000000@0.18 w0.5",
            "symbol display 11.44 FFFFFF@1 245.85,19.85 14.3x14.3",
            "icon 294,16 26x26 @1",
            "fill 299,7 16x3 r1.5 B3B3B3@1",
            "fill 330.5,14 1x24 r0 FFFFFF@0.13",
            "fill 391.5,14 1x24 r0 FFFFFF@0.13",
            "gradient 404,16 22x22 r5.28 9EA8B5@1 6B7585@1 -90",
            "stroke 404,16 22x22 r5.28 000000@0.18 w0.5",
            "symbol trash 11.44 FFFFFF@1 407.85,19.85 14.3x14.3",
            "icon 348,16 26x26 @1",
            "fill 353,7 16x3 r1.5 B3B3B3@1",
        }));
}

TEST(BarPainterTest, ButtonShowsItsState)
{
    const std::string hover = "fill 12,4 38x44 r9 FFFFFF@0.1";
    const std::string active = "fill 12,4 38x44 r9 FFFFFF@0.18";
    const std::string idleIcon = "icon 18,16 26x26 @0.42";
    const std::string fullIcon = "icon 18,16 26x26 @1";
    const std::string dash = "fill 23,7 16x3 r1.5 B3B3B3@1";
    const std::string longDash = "fill 18,7 26x3 r1.5 FF0000@1";
    BarItem aWindow = application("Letter", true, false, 2);
    aWindow.windowID = 7;
    const std::string wanted = "fill 12,4 38x44 r9 FF3B30@0.3";
    BarItem demanding = application("Mail", true);
    demanding.demandsAttention = true;
    BarItem bare = application("Mail", true);
    bare.icon.reset();
    const struct {
        const char* what;
        BarItem item;
        bool isHovered;
        Lines painted;
    } rows[] = {
        { "not running", application("Mail", false, false, 5), false, { idleIcon } },
        { "not running, hovered", application("Mail", false), true, { hover, idleIcon } },
        { "in the background", application("Mail", true), false, { fullIcon, dash } },
        { "in the background, hovered", application("Mail", true), true, { hover, fullIcon, dash } },
        { "frontmost", application("Mail", true, true), false, { active, fullIcon, longDash } },
        { "frontmost, hovered", application("Mail", true, true), true, { active, fullIcon, longDash } },
        { "two windows", application("Mail", true, false, 2), false,
            { fullIcon, "fill 21,7 8x3 r1.5 B3B3B3@1", "fill 33,7 8x3 r1.5 B3B3B3@1" } },
        { "nine windows in front", application("Mail", true, true, 9), false,
            { active, fullIcon, "fill 15,7 8x3 r1.5 FF0000@1", "fill 27,7 8x3 r1.5 FF0000@1",
                "fill 39,7 8x3 r1.5 FF0000@1" } },
        { "one window of two", aWindow, false, { fullIcon, dash } },
        { "without an icon", bare, false, { dash } },
        { "demands attention", demanding, true, { wanted, hover, fullIcon, "fill 23,7 16x3 r1.5 FF3B30@1" } },
    };
    for (const auto& row : rows) {
        BarPicture bar = picture({ row.item });
        if (row.isHovered)
            bar.hovered = 0;
        EXPECT_EQ(paintedButtons(bar), row.painted) << row.what;
    }
    BarPicture without = picture({ application("Mail", true, false, 2) });
    without.look.showsPips = false;
    EXPECT_EQ(paintedButtons(without), (Lines { fullIcon, dash }));
}

TEST(BarPainterTest, StyleAndEdgeShapeTheBody)
{
    const struct {
        const char* what;
        BarStyle style;
        BarEdge edge;
        double inset;
        Lines body;
    } rows[] {
        { "translucent", BarStyle::translucent, BarEdge::bottom, 0,
            { "fill 0,0 400x52 r0 0000FF@0.44", "fill 0,51 400x1 r0 FFFFFF@0.12" } },
        { "gradient, top", BarStyle::gradient, BarEdge::top, 0,
            { "gradient 0,0 400x52 r0 0000FF@0.8 00008C@0.8 90", "fill 0,0 400x1 r0 FFFFFF@0.12" } },
        { "floating", BarStyle::solid, BarEdge::bottom, 8, { "fill 8,8 384x36 r12 0000FF@0.8" } },
    };
    for (const auto& row : rows) {
        BarPicture bar = picture({});
        bar.look.style = row.style;
        bar.look.edge = row.edge;
        bar.look.opacity = 0.8;
        bar.look.floatingInset = row.inset;
        Lines expected = row.body;
        expected.push_back("fill 0.5,14 1x24 r0 FFFFFF@0.13");
        EXPECT_EQ(painted(bar), expected) << "the separator keeps its place: " << row.what;
    }
}

TEST(BarPainterTest, OnTheTopEdgeIconsSinkAndMarksGoToTheTopWhateverTheStateOfTheRest)
{
    BarPicture bar = picture({ application("Mail", true) }, { search, showDesktop, finder, apps, trash }, 1400);
    bar.look.edge = BarEdge::top;
    bar.finder = application("Finder", true, true, 2);
    bar.isSearchFocused = true;
    bar.isShowingDesktop = true;
    bar.isTrashEmpty = false;
    const Lines all = painted(bar);
    for (const char* line : { "fill 8,13 160x26 r6 FFFFFF@0.11", "stroke 8,13 160x26 r6 FF0000@0.9 w1.5",
             "symbol magnifyingglass 12 FFFFFF@1 15.5,18.5 15x15", "fill 180,4 38x44 r9 FFFFFF@0.18",
             "gradient 188,10 22x22 r5.28 5C9EFA@1 2461DB@1 -90", "fill 234,4 38x44 r9 FFFFFF@0.18",
             "icon 240,10 26x26 @1", "fill 243,42 8x3 r1.5 FF0000@1", "fill 255,42 8x3 r1.5 FF0000@1",
             "symbol trash.fill 11.44 FFFFFF@1 353.85,13.85 14.3x14.3", "icon 294,10 26x26 @1",
             "fill 299,42 16x3 r1.5 B3B3B3@1" })
        EXPECT_EQ(std::ranges::count(all, line), 1) << line;

    bar.finder.reset();
    EXPECT_EQ(painted(bar).size(), all.size() - 4) << "nothing while Finder doesn't run";
}

TEST(BarPainterTest, BadgeGrowsWithItsTextAndMovesDownAndLeftWithIt)
{
    const auto badged = [](const char* text) {
        BarItem item = application("Mail", false);
        item.badge = text;
        return paintedButtons(picture({ item }));
    };
    EXPECT_EQ(badged(""), Lines { "icon 18,16 26x26 @0.42" });
    const Lines narrow = badged("1");
    ASSERT_EQ(narrow.size(), 4u);
    EXPECT_EQ(narrow[1], "fill 35.75,35.25 15x15 r7.5 FF3B30@1");
    EXPECT_EQ(narrow[2], "stroke 35.75,35.25 15x15 r7.5 000000@0.25 w0.5");
    EXPECT_TRUE(narrow[3].starts_with("text 1 9 FFFFFF ")) << narrow[3];

    double x = 0, y = 0, width = 0;
    ASSERT_EQ(std::sscanf(badged("12345").at(1).c_str(), "fill %lf,%lf %lfx15 ", &x, &y, &width), 3);
    EXPECT_DOUBLE_EQ(width, sizeWithAttributes("12345", NSFont::systemFont(9, NSFontWeight::semibold)).width + 8);
    EXPECT_LT(x, 35.75);
    EXPECT_LT(y, 35.25);
}

TEST(BarPainterTest, LandingPlaceOfADragIsAnEmptyPill)
{
    BarItem moving = application("Mail", true, true);
    moving.badge = "3";
    BarPicture bar = picture({ application("Notes", false), moving, application("Music", false) });
    bar.drag = BarDrag { .landing = 1, .pointX = 80, .icon = icon() };
    bar.hovered = 2;
    EXPECT_EQ(paintedButtons(bar),
        (Lines {
            "icon 18,16 26x26 @0.42",
            "fill 58,4 38x44 r9 FFFFFF@0.1",
            "fill 104,4 38x44 r9 FFFFFF@0.1",
            "icon 110,16 26x26 @0.42",
            "save",
            "shadow 000000@0.5 blur 8 offset 0,-2",
            "icon 64.4,13.4 31.2x31.2 @1",
            "restore",
        }));

    bar.drag->icon.reset();
    EXPECT_EQ(paintedButtons(bar).size(), 4u) << "nothing flies without an icon";
}

}
