#include "contract/X11Fixture.h"

#include <QLabel>
#include <QPainter>
#include <QWidget>
#include <xcb/shape.h>

#include <algorithm>

namespace {

class X11Panel : public X11 {
protected:
    bool isManaged(xcb_window_t window)
    {
        const auto clients = under_->numbers(under_->root(), "_NET_CLIENT_LIST");
        return std::ranges::find(clients, window) != clients.end();
    }

    bool isViewable(xcb_window_t window)
    {
        const auto state = under_->ask(xcb_get_window_attributes_reply, xcb_get_window_attributes, window);
        return state && state->override_redirect && state->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// The child of the root that a window lies in, and its place among them from the bottom.
    std::ptrdiff_t height(xcb_window_t window)
    {
        auto tree = under_->ask(xcb_query_tree_reply, xcb_query_tree, window);
        for (; tree && tree->parent != under_->root(); tree = under_->ask(xcb_query_tree_reply, xcb_query_tree, window))
            window = tree->parent;
        if (!tree)
            return -1;
        tree = under_->ask(xcb_query_tree_reply, xcb_query_tree, under_->root());
        const auto* children = xcb_query_tree_children(tree.get());
        return std::find(children, children + xcb_query_tree_children_length(tree.get()), window) - children;
    }

    CGPoint corner(xcb_window_t window)
    {
        const auto reply
            = under_->ask(xcb_translate_coordinates_reply, xcb_translate_coordinates, window, under_->root(), 0, 0);
        return { double(reply->dst_x), double(reply->dst_y) };
    }

    static constexpr double barHeight = 48;

    int shapeArea(xcb_window_t window)
    {
        const auto reply
            = under_->ask(xcb_shape_get_rectangles_reply, xcb_shape_get_rectangles, window, XCB_SHAPE_SK_BOUNDING);
        const auto* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
        int area = 0;
        for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index)
            area += rectangles[index].width * rectangles[index].height;
        return area;
    }
};

}

TEST_F(X11Panel, APopupIsNobodysButOursAndHasTheShapeOfItsPaintWhereNothingIsBlended)
{
    start("behind");
    const auto front = processes().frontmost();
    // What it paints leaves a quarter out.
    QPixmap picture(200, 100);
    picture.fill(Qt::transparent);
    QPainter(&picture).fillRect(0, 0, 200, 50, Qt::red);
    QPainter(&picture).fillRect(0, 0, 100, 100, Qt::red);
    QWidget popup;
    popup.setAttribute(Qt::WA_NoSystemBackground);
    QLabel content(&popup);
    content.setPixmap(picture);
    content.resize(picture.size());
    surfaces().adopt(popup, { .level = 102, .isOpaque = false }, { 300, 300, 200, 100 });
    surfaces().orderFront(popup);
    const auto number = static_cast<xcb_window_t>(popup.winId());
    EXPECT_TRUE(settle([&] { return isViewable(number); }));
    EXPECT_FALSE(isManaged(number));
    EXPECT_FALSE(isListed(number));
    EXPECT_EQ(processes().frontmost(), front);
    EXPECT_EQ(displays().all().front().visibleFrame, displays().all().front().frame);
    EXPECT_TRUE(under_->numbers(number, "_NET_WM_STRUT_PARTIAL").empty());
    EXPECT_EQ(under_->numbers(number, "_NET_WM_WINDOW_TYPE"),
        (std::vector<std::uint32_t> { under_->atom("_NET_WM_WINDOW_TYPE_POPUP_MENU") }));
    EXPECT_TRUE(settle([&] { return surfaces().canBlend() || shapeArea(number) == 200 * 100 * 3 / 4; }))
        << shapeArea(number);
    surfaces().release(popup);
}

TEST_F(X11Panel, ABarThatAnotherProgramMovesOrCoversComesBackEachTime)
{
    const CGRect frame = displays().all().front().frame;
    QWidget bar;
    showBar(bar, barHeight);
    const auto panel = static_cast<xcb_window_t>(bar.winId());
    ASSERT_TRUE(settle([&] { return !hasWindowManager() || isManaged(panel); }));
    const auto comesBack = [&](const std::function<bool()>& isBack) {
        hear();
        surfaces().orderFront(bar);
        EXPECT_TRUE(settle(isBack));
        hear();
    };
    const CGPoint home { 0, frame.height - barHeight };
    const auto isHome = [&] { return corner(panel) == home; };
    EXPECT_TRUE(settle(isHome));
    for (int round = 0; round < 2; ++round) {
        const std::uint32_t y = 400;
        xcb_configure_window(under_->connection(), panel, XCB_CONFIG_WINDOW_Y, &y);
        xcb_flush(under_->connection());
        if (!settle([&] { return corner(panel).y == y; }))
            break; // Bars can't be moved here.
        comesBack(isHome);
    }

    if (!hasWindowManager())
        GTEST_SKIP() << "nobody minds a bar";
    const auto above
        = start("above", { "_NET_WM_STATE ATOM _NET_WM_STATE_ABOVE" }, { 200, frame.height - 300, 400, 200 });
    const bool canOverlap = settle([&] {
        write(element(above.pid, above.window), host::Attribute::position, CGPoint { 200, frame.height - 150 });
        return bounds(above.window).maxY() > frame.height - barHeight;
    });
    if (!canOverlap)
        GTEST_SKIP() << "windows are kept off bars here";
    const auto isInFront = [&] { return height(panel) > height(above.window); };
    under_->raise(panel);
    if (!settle(isInFront))
        GTEST_SKIP() << "such windows are in front of bars here";
    for (int round = 0; round < 3; ++round) {
        // More often than the bar looks, so that it finds the same window in the way each time.
        under_->focus(above.window);
        under_->raise(above.window);
        if (!settle([&] { return !isInFront(); }))
            GTEST_SKIP() << "bars are in front of all windows here";
        comesBack(isInFront);
    }
    surfaces().release(bar);
}
