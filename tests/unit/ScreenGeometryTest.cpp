#include "ModelTest.h"

#include "settings/Settings.h"
#include "system/Displays.h"
#include "tamer/TargetGeometry.h"

namespace {

/// A primary display of 1000 by 800 with four around it. The bar is 63 points high, the gap 5.
class ScreenGeometryTest : public ModelTest {
protected:
    void describe() override
    {
        auto primary = display(1, "PRIMARY", { 0, 0, 1000, 800 }, { 1 });
        primary.dockInset = 50;
        desk.displays = { primary, display(2, "RIGHT", { 1000, 100, 900, 600 }, { 2 }),
            display(3, "ABOVE", { 0, 800, 1000, 500 }, { 3 }), display(4, "BELOW", { 0, -700, 1000, 700 }, { 4 }),
            display(5, "LEFT", { -800, -100, 800, 1000 }, { 5 }) };
    }

    static std::optional<std::uint32_t> displayContaining(const CGRect& rect)
    {
        const auto screen = Displays::screenContaining(rect);
        return screen ? Displays::displayID(*screen) : std::nullopt;
    }
};

}

TEST_F(ScreenGeometryTest, TheTargetIsTheScreenLessMenuBarAndBarInWindowSpace)
{
    const struct {
        BarEdge edge;
        BarSize size;
        std::vector<CGRect> targets;
    } rows[] {
        { BarEdge::bottom, BarSize::large,
            { { 0, 24, 1000, 708 }, { 1000, 124, 900, 508 }, { 0, -476, 1000, 408 }, { 0, 824, 1000, 608 },
                { -800, -76, 800, 908 } } },
        { BarEdge::top, BarSize::large,
            { { 0, 92, 1000, 658 }, { 1000, 192, 900, 508 }, { 0, -408, 1000, 408 }, { 0, 892, 1000, 608 },
                { -800, -8, 800, 908 } } },
        { BarEdge::bottom, BarSize::small,
            { { 0, 24, 1000, 728 }, { 1000, 124, 900, 528 }, { 0, -476, 1000, 428 }, { 0, 824, 1000, 628 },
                { -800, -76, 800, 928 } } },
    };
    for (const auto& row : rows) {
        Settings::barEdge.set(row.edge);
        Settings::barSize.set(row.size);
        const auto screens = NSScreen::screens();
        for (std::size_t i = 0; i < screens.size(); ++i)
            EXPECT_EQ(WindowTamer::targetRect(screens[i]), row.targets[i]) << rawValue(row.edge) << " screen " << i;
        EXPECT_EQ(WindowTamer::targetRect(), row.targets[0]);
    }
    while (!NSScreen::screens().empty())
        world().removeScreen(0);
    EXPECT_FALSE(WindowTamer::targetRect());
}

TEST_F(ScreenGeometryTest, AFrameInTheBarIsMovedOffItAndShrunkOnlyIfItMust)
{
    const CGRect bottom { 0, 0, 1710, 1039 };
    const CGRect top { 0, 100, 1710, 1007 };
    const struct {
        BarEdge edge;
        CGRect frame;
        std::optional<CGRect> result;
    } rows[] {
        { BarEdge::bottom, { 1278, 200, 400, 900 }, CGRect { 1278, 139, 400, 900 } },
        { BarEdge::bottom, { 5000, 200, 400, 1039 }, CGRect { 5000, 0, 400, 1039 } },
        { BarEdge::bottom, { 0, 900, 400, 140 }, {} },
        { BarEdge::bottom, { 0, 900, 400, 140.5 }, CGRect { 0, 898.5, 400, 140.5 } },
        { BarEdge::bottom, { 0, -300, 400, 500 }, {} },
        { BarEdge::top, { 0, 40, 400, 146 }, CGRect { 0, 100, 400, 146 } },
        { BarEdge::top, { 0, 99, 400, 146 }, {} },
        { BarEdge::top, { 0, 90, 400, 1100 }, CGRect { 0, 100, 400, 1007 } },
    };
    for (const auto& row : rows) {
        Settings::barEdge.set(row.edge);
        EXPECT_EQ(WindowTamer::clearedFrame(row.frame, row.edge == BarEdge::top ? top : bottom), row.result)
            << "row " << &row - rows;
    }
}

TEST_F(ScreenGeometryTest, AWindowBelongsToTheScreenItOverlapsMost)
{
    const struct {
        const char* what;
        CGRect window;
        std::uint32_t display;
    } cases[] {
        { "on the primary", { 10, 10, 100, 100 }, 1 },
        { "mostly on the right", { 950, 300, 200, 100 }, 2 },
        { "half and half", { 900, 300, 200, 100 }, 1 },
        { "above the primary, so at a negative y", { 100, -300, 200, 200 }, 3 },
        { "only touching the right one from below", { 1200, 700, 100, 100 }, 2 },
        { "an edge against the right one, an overlap with the primary", { 900, 100, 100, 100 }, 1 },
        { "off all screens", { 5000, 5000, 100, 100 }, 1 },
    };
    for (const auto& test : cases)
        EXPECT_EQ(displayContaining(test.window), test.display) << test.what;

    const pid_t editor = run("Editor");
    openWindow(editor, { 1200, 300, 400, 300 });
    world().activate(editor);
    EXPECT_EQ(displayContaining({ 5000, 5000, 100, 100 }), 2u) << "off all screens, so on that with the focus";
}
