#include "embedded/View.h"

#include "base/RunLoop.h"
#include "embedded/DisplayWidget.h"
#include "embedded/EmbeddedDesktop.h"
#include "embedded/KeyPlaces.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace embedded {

namespace {

QRect rounded(const CGRect& rect)
{
    return QRectF(rect.x, rect.y, std::max(1.0, rect.width), std::max(1.0, rect.height)).toRect();
}

/// What a titled window has around its content.
QMargins edgesOf(const QWidget& titled)
{
    const QStyle& style = *titled.style();
    const int edge = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &titled);
    return { edge, style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &titled), edge, edge };
}

}

View::View(EmbeddedDesktop& desktop)
    : desktop_(desktop)
{
    setWindowTitle("Desktop");
    qApp->installEventFilter(this);
    arrange();
}

View::~View()
{
    desktop_.surfaces().setStage(nullptr);
}

void View::sceneChanged()
{
    if (arranged_ != frames())
        arrange();
    for (DisplayWidget* display : displays_)
        display->sceneChanged();
}

std::vector<CGRect> View::frames() const
{
    std::vector<CGRect> frames;
    const Screens& screens = desktop_.world().screens();
    for (const Screen& screen : screens.all())
        frames.push_back(screens.flipped(screen.frame));
    return frames;
}

void View::arrange()
{
    // Panels are taken out before the displays that hold them go.
    for (const Panel& panel : desktop_.surfaces().panels())
        outermost(*panel.widget).setParent(this);
    qDeleteAll(displays_);
    displays_.clear();

    arranged_ = frames();
    QRect whole;
    for (const CGRect& frame : arranged_)
        whole |= rounded(frame);
    for (std::size_t index = 0; index < arranged_.size(); ++index) {
        auto* display = new DisplayWidget(desktop_, index, this);
        display->setGeometry(rounded(arranged_[index]).translated(-whole.topLeft()));
        display->show();
        displays_.push_back(display);
    }
    // So that it can be typed into before anything has been clicked.
    if (!focusWidget() && !displays_.empty())
        displays_.front()->setFocus();
    setFixedSize(whole.size());
    desktop_.surfaces().setStage(this);
}

void View::put(QWidget& widget, const CGRect& frame, bool isWindow)
{
    if (displays_.empty())
        return;
    if (isWindow && &outermost(widget) == &widget) {
        auto* titled = new QMdiSubWindow(this);
        titled->setWidget(&widget);
    }
    QWidget& outer = outermost(widget);
    const std::size_t index = desktop_.world().screens().containing(frame);
    const CGRect& display = arranged_[index];
    if (outer.parentWidget() != displays_[index]) {
        const bool wasHidden = outer.isHidden();
        outer.setParent(displays_[index]);
        outer.setAttribute(Qt::WA_NoMousePropagation); // Else a click on it would also hit the display.
        outer.setVisible(!wasHidden);
    }
    const QMargins edges = &outer == &widget ? QMargins() : edgesOf(outer);
    outer.setGeometry(
        rounded({ frame.x - display.x, frame.y - display.y, frame.width, frame.height }).marginsAdded(edges));
}

void View::letGo(QWidget& widget)
{
    auto* titled = qobject_cast<QMdiSubWindow*>(&outermost(widget));
    if (titled)
        titled->setWidget(nullptr);
    widget.setParent(nullptr);
    if (titled)
        titled->deleteLater();
}

CGRect View::place(const QWidget& widget) const
{
    const QPoint corner = widget.mapTo(this, QPoint());
    for (std::size_t index = 0; index < displays_.size(); ++index) {
        const QPoint inDisplay = corner - displays_[index]->pos();
        if (displays_[index]->isAncestorOf(&widget))
            return { arranged_[index].x + inDisplay.x(), arranged_[index].y + inDisplay.y(), double(widget.width()),
                double(widget.height()) };
    }
    return {};
}

void View::panelsChanged()
{
    for (DisplayWidget* display : displays_)
        display->update();
}

void View::takeBackKeyboard(const QWidget& panel)
{
    if (QWidget* display = panel.parentWidget())
        display->setFocus();
}

bool View::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || (widget != this && !isAncestorOf(widget)))
        return false;
    if (event->type() == QEvent::KeyPress)
        return isSwallowed(*static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::MouseButtonPress)
        bringForward(*widget);
    if (event->type() == QEvent::MouseMove)
        followPointer(*widget, *static_cast<QMouseEvent*>(event));
    return false;
}

/// Whoever has the keyboard here, a tap comes first.
bool View::isSwallowed(const QKeyEvent& event)
{
    const RunLoop::Turn turn;
    const auto press = keyPressOf(event);
    return press && desktop_.keyboard().isSwallowed(*press);
}

/// A press anywhere in an ordinary window of the program's turns to it.
void View::bringForward(QWidget& pressed)
{
    const RunLoop::Turn turn;
    for (QWidget* each = &pressed; each && each != this; each = each->parentWidget()) {
        if (const auto* titled = qobject_cast<QMdiSubWindow*>(each)) {
            desktop_.surfaces().orderFront(*titled->widget());
            desktop_.surfaces().turnTo(*titled->widget());
            return;
        }
    }
}

/// Over displays and panels alike.
void View::followPointer(const QWidget& widget, const QMouseEvent& move)
{
    for (DisplayWidget* display : displays_) {
        const CGPoint point = display->screenPoint(widget.mapTo(this, move.position()) - display->pos());
        if (&widget == display)
            desktop_.pointer().move(point, move.buttons() != Qt::NoButton);
        else if (display->isAncestorOf(&widget))
            desktop_.pointer().moveWithin(point, move.buttons() != Qt::NoButton);
    }
}

/// The night around the displays.
void View::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), Qt::black);
}

void View::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    if (onClosed)
        onClosed();
}

}
