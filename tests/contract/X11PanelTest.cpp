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
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property)
    {
        const Answer<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(under_->connection(),
                xcb_get_property(under_->connection(), 0, window, under_->atom(property), XCB_ATOM_ANY, 0, 64),
                nullptr),
            &std::free);
        if (!reply)
            return {};
        const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return { first, first + xcb_get_property_value_length(reply.get()) / 4 };
    }

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
