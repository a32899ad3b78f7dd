#include "contract/X11Fixture.h"

#include <QPainter>
#include <QWidget>
#include <xcb/shape.h>

#include <algorithm>

namespace {

/// A popup that paints a square with a quarter of it left out.
class Notched final : public QWidget {
public:
    Notched()
        : content_(this)
    {
        setAttribute(Qt::WA_NoSystemBackground);
    }
    ~Notched() override { surfaces_->release(*this); }

    void show(host::Surfaces& surfaces, const CGRect& frame)
    {
        surfaces_ = &surfaces;
        surfaces.adopt(*this, { .level = 102, .isOpaque = false }, frame);
        content_.resize(size());
        surfaces.orderFront(*this);
    }

    xcb_window_t number() const { return static_cast<xcb_window_t>(winId()); }

private:
    class Content final : public QWidget {
    public:
        using QWidget::QWidget;

    private:
        void paintEvent(QPaintEvent*) override
        {
            QPainter painter(this);
            painter.fillRect(0, 0, width(), height() / 2, Qt::red);
            painter.fillRect(0, 0, width() / 2, height(), Qt::red);
        }
    };

    Content content_;
    host::Surfaces* surfaces_ = nullptr;
};

template <class T>
using Answer = std::unique_ptr<T, decltype(&std::free)>;

class X11Panel : public X11 {
protected:
    bool isManaged(xcb_window_t window)
    {
        const auto clients = numbers(under_->root(), "_NET_CLIENT_LIST");
        return std::ranges::find(clients, window) != clients.end();
    }

    bool isViewable(xcb_window_t window)
    {
        const Answer<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(
                under_->connection(), xcb_get_window_attributes(under_->connection(), window), nullptr),
            &std::free);
        return reply && reply->override_redirect && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// A bar along the lower edge, shown.
    void showBar(QWidget& bar)
    {
        const CGRect frame = displays().all().front().frame;
        surfaces().adopt(bar, { .role = host::SurfaceRole::bottomBar, .level = 101 }, { 0, 0, frame.width, barHeight });
        surfaces().orderFront(bar);
        ASSERT_TRUE(settle([&] { return under_->shows(bar); }));
        ASSERT_TRUE(settle([&] { return !hasWindowManager() || isManaged(static_cast<xcb_window_t>(bar.winId())); }));
    }

    /// The child of the root that a window lies in, and its place among them from the bottom.
    std::ptrdiff_t height(xcb_window_t window)
    {
        for (;;) {
            const Answer<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(under_->connection(), xcb_query_tree(under_->connection(), window), nullptr),
                &std::free);
            if (!tree || tree->parent == XCB_WINDOW_NONE)
                return -1;
            if (tree->parent == under_->root())
                break;
            window = tree->parent;
        }
        const Answer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(under_->connection(), xcb_query_tree(under_->connection(), under_->root()), nullptr),
            &std::free);
        const auto* children = xcb_query_tree_children(tree.get());
        return std::find(children, children + xcb_query_tree_children_length(tree.get()), window) - children;
    }

    CGPoint corner(xcb_window_t window)
    {
        const Answer<xcb_translate_coordinates_reply_t> reply(
            xcb_translate_coordinates_reply(under_->connection(),
                xcb_translate_coordinates(under_->connection(), window, under_->root(), 0, 0), nullptr),
            &std::free);
        return { double(reply->dst_x), double(reply->dst_y) };
    }

    static constexpr double barHeight = 48;

    int shapeArea(xcb_window_t window)
    {
        const Answer<xcb_shape_get_rectangles_reply_t> reply(
            xcb_shape_get_rectangles_reply(under_->connection(),
                xcb_shape_get_rectangles(under_->connection(), window, XCB_SHAPE_SK_BOUNDING), nullptr),
            &std::free);
        const auto* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
        int area = 0;
        for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index)
            area += rectangles[index].width * rectangles[index].height;
        return area;
    }
};

}

TEST_F(X11Panel, APopupIsNobodysButOurs)
{
    start("behind");
    const auto front = processes().frontmost();
    Notched popup;
    popup.show(surfaces(), { 300, 300, 200, 100 });
    EXPECT_TRUE(settle([&] { return isViewable(popup.number()); }));
    EXPECT_FALSE(isManaged(popup.number()));
    EXPECT_FALSE(isListed(popup.number()));
    EXPECT_EQ(processes().frontmost(), front);
    EXPECT_EQ(displays().all().front().visibleFrame, displays().all().front().frame);
    EXPECT_TRUE(numbers(popup.number(), "_NET_WM_STRUT_PARTIAL").empty());
    EXPECT_EQ(numbers(popup.number(), "_NET_WM_WINDOW_TYPE"),
        (std::vector<std::uint32_t> { under_->atom("_NET_WM_WINDOW_TYPE_POPUP_MENU") }));
}

TEST_F(X11Panel, WhereNothingIsBlendedAPopupHasTheShapeOfItsPaint)
{
    if (surfaces().canBlend())
        GTEST_SKIP() << "a compositing manager runs";
    Notched popup;
    popup.show(surfaces(), { 300, 300, 200, 100 });
    EXPECT_TRUE(settle([&] { return shapeArea(popup.number()) == 200 * 100 * 3 / 4; })) << shapeArea(popup.number());
}

TEST_F(X11Panel, ABarThatIsCoveredComesBackEachTime)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "nobody minds a bar";
    const CGRect frame = displays().all().front().frame;
    QWidget bar;
    showBar(bar);
    const auto panel = static_cast<xcb_window_t>(bar.winId());
    const auto above
        = start("above", { { "atoms", "_NET_WM_STATE _NET_WM_STATE_ABOVE" } }, { 200, frame.height - 300, 400, 200 });
    const bool canOverlap = settle([&] {
        write(element(above.pid, above.window), host::Attribute::position, CGPoint { 200, frame.height - 150 });
        return bounds(above.window).maxY() > frame.height - barHeight;
    });
    if (!canOverlap)
        GTEST_SKIP() << "windows are kept off bars here";
    const std::uint32_t front = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(under_->connection(), panel, XCB_CONFIG_WINDOW_STACK_MODE, &front);
    xcb_flush(under_->connection());
    if (!settle([&] { return height(panel) > height(above.window); }))
        GTEST_SKIP() << "such windows are in front of bars here";
    for (int round = 0; round < 3; ++round) {
        // More often than the bar looks, so that it finds the same window in the way each time.
        under_->focus(above.window);
        under_->tell(above.window, "raise");
        if (!settle([&] { return height(above.window) > height(panel); }))
            GTEST_SKIP() << "bars are in front of all windows here";
        hear();
        surfaces().orderFront(bar);
        EXPECT_TRUE(settle([&] { return height(panel) > height(above.window); })) << round;
        hear();
    }
    surfaces().release(bar);
}

TEST_F(X11Panel, ABarThatAnotherProgramMovesIsPutBack)
{
    const CGRect frame = displays().all().front().frame;
    QWidget bar;
    showBar(bar);
    const auto panel = static_cast<xcb_window_t>(bar.winId());
    const CGPoint home { 0, frame.height - barHeight };
    EXPECT_TRUE(settle([&] { return corner(panel) == home; }));
    for (int round = 0; round < 2; ++round) {
        const std::uint32_t y = 400;
        xcb_configure_window(under_->connection(), panel, XCB_CONFIG_WINDOW_Y, &y);
        xcb_flush(under_->connection());
        if (!settle([&] { return corner(panel).y == y; }))
            GTEST_SKIP() << "bars can't be moved here";
        hear();
        surfaces().orderFront(bar);
        EXPECT_TRUE(settle([&] { return corner(panel) == home; })) << round << ' ' << corner(panel).y;
        hear();
    }
    surfaces().release(bar);
}
