#include "unit/Fixture.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

using namespace embedded;

namespace {

/// A desktop that is looked at, with a user's hand in it. Points are in window space, which with one display is also
/// that of the view.
class ViewTest : public DesktopTest {
protected:
    void SetUp() override
    {
        mail = desk.app("Mail").pid;
        browser = desk.app("Browser").pid;
        desk.window(browser, "Start").bounds = { 400, 300, 500, 400 };
        desk.window(mail, "Inbox").bounds = { 100, 100, 500, 400 };
        start();
        desktop().show();
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->windowTitle() == "Desktop")
                view = top;
        }
    }

    void mouse(QEvent::Type type, QPointF point, Qt::MouseButtons held)
    {
        QWidget* target = view->childAt(point.toPoint());
        ASSERT_TRUE(target);
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, target->mapFrom(view, point), view->mapToGlobal(point), button, held, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }

    void click(QPointF point)
    {
        mouse(QEvent::MouseButtonPress, point, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, point, Qt::NoButton);
    }

    void key(int code, Qt::KeyboardModifiers modifiers, const QString& text)
    {
        QKeyEvent event(QEvent::KeyPress, code, modifiers, text);
        QApplication::sendEvent(view->childAt(5, 5), &event);
    }

    pid_t mail = 0;
    pid_t browser = 0;
    QWidget* view = nullptr;
};

TEST_F(ViewTest, ClicksAndDragsGoToTheWindowThatIsInFrontThereAndKeysToTheFocusedOne)
{
    ASSERT_TRUE(view->focusWidget()) << "without a click";
    QTest::keyClick(view->focusWidget(), Qt::Key_A);
    const pid_t finder = world().processNamed(finderIdentifier)->pid();
    const struct {
        QPointF point;
        pid_t front;
    } clicks[] { { { 150, 300 }, mail }, { { 550, 450 }, mail }, { { 1300, 800 }, finder }, { { 850, 650 }, browser } };
    for (const auto& each : clicks) {
        click(each.point);
        EXPECT_EQ(world().frontmost(), each.front);
    }
    key(Qt::Key_B, Qt::NoModifier, "b");
    EXPECT_EQ(world().window(1)->typed, "ab");

    mouse(QEvent::MouseButtonPress, { 650, 310 }, Qt::LeftButton);
    mouse(QEvent::MouseMove, { 700, 350 }, Qt::LeftButton);
    EXPECT_EQ(world().window(1)->bounds, (CGRect { 450, 340, 500, 400 }));
    mouse(QEvent::MouseMove, { 700, 2 }, Qt::LeftButton);
    EXPECT_EQ(world().window(1)->bounds.y, 24) << "not under the menu bar";
    mouse(QEvent::MouseButtonRelease, { 700, 2 }, Qt::NoButton);

    // The lights of the two windows.
    click({ 450 + 14, 24 + 14 });
    EXPECT_FALSE(world().window(1));
    click({ 100 + 8 + 26, 100 + 14 });
    EXPECT_TRUE(world().window(2)->isMinimised);

    key(Qt::Key_Right, Qt::ControlModifier, {});
    key(Qt::Key_Right, Qt::ControlModifier, {});
    EXPECT_EQ(world().activeSpace(), 2u) << "the last one";

    std::string reason;
    desktop().onLost = [&](const std::string& why) { reason = why; };
    view->close();
    EXPECT_EQ(reason, "the desktop's window was closed");
}

TEST_F(ViewTest, PanelsLieInTheOrderOfTheirLevelsAndKeepClicksAndDragsToThemselves)
{
    QWidget low;
    QWidget high;
    low.setMouseTracking(true);
    auto& surfaces = desktop().surfaces();
    surfaces.adopt(high, { .level = 102 }, { 0, 0, 100, 40 });
    surfaces.adopt(low, { .level = 101 }, { 0, 0, 1440, 40 });
    surfaces.orderFront(high);
    surfaces.orderFront(low);
    EXPECT_EQ(low.geometry().translated(low.parentWidget()->pos()), QRect(0, 860, 1440, 40));
    EXPECT_EQ(view->childAt(10, 880), &high);
    EXPECT_EQ(view->childAt(200, 880), &low);
    surfaces.orderOut(high);
    EXPECT_EQ(view->childAt(10, 880), &low);

    int moves = 0;
    desktop().pointer().onMove = [&](bool) { ++moves; };
    desktop().pointer().watch(true);
    const struct {
        QPointF point;
        Qt::MouseButtons held;
        int moves;
    } steps[] { { { 10, 880 }, Qt::NoButton, 1 }, { { 20, 880 }, Qt::LeftButton, 1 },
        { { 10, 500 }, Qt::NoButton, 2 } };
    for (const auto& step : steps) {
        mouse(QEvent::MouseMove, step.point, step.held);
        EXPECT_EQ(desktop().pointer().location(), (CGPoint { step.point.x(), 899 - step.point.y() }));
        EXPECT_EQ(moves, step.moves);
    }
    click({ 10, 880 });
    EXPECT_EQ(world().frontmost(), browser);
    surfaces.release(high);
    surfaces.release(low);
    EXPECT_EQ(low.parentWidget(), nullptr);
}

}
