#include "embedded/View.h"

#include "embedded/DisplayWidget.h"
#include "embedded/EmbeddedDesktop.h"

#include <QApplication>
#include <QMouseEvent>

#include <algorithm>

namespace embedded {

namespace {

QRect rounded(const CGRect& rect)
{
    return QRectF(rect.x, rect.y, std::max(1.0, rect.width), std::max(1.0, rect.height)).toRect();
}

}

View::View(EmbeddedDesktop& desktop)
    : desktop_(desktop)
{
    setWindowTitle("Desktop");
    setPalette(QPalette(Qt::black));
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
        panel.widget->setParent(this);
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
    setFixedSize(whole.size());
    desktop_.surfaces().setStage(this);
}

void View::put(QWidget& widget, const CGRect& frame)
{
    if (displays_.empty())
        return;
    const std::size_t index = desktop_.world().screens().containing(frame);
    const CGRect& display = arranged_[index];
    if (widget.parentWidget() != displays_[index]) {
        const bool wasHidden = widget.isHidden();
        widget.setParent(displays_[index]);
        widget.setAttribute(Qt::WA_NoMousePropagation); // Else a click on it would also hit the display.
        widget.setVisible(!wasHidden);
    }
    widget.setGeometry(rounded({ frame.x - display.x, frame.y - display.y, frame.width, frame.height }));
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

/// Follows the pointer, over displays and panels alike.
bool View::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::MouseMove || !widget || !isAncestorOf(widget))
        return false;
    const auto* move = static_cast<QMouseEvent*>(event);
    for (DisplayWidget* display : displays_) {
        const CGPoint point = display->screenPoint(widget->mapTo(this, move->position()) - display->pos());
        if (widget == display)
            desktop_.pointer().move(point, move->buttons() != Qt::NoButton);
        else if (display->isAncestorOf(widget))
            desktop_.pointer().moveWithin(point, move->buttons() != Qt::NoButton);
    }
    return false;
}

void View::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    if (onClosed)
        onClosed();
}

}
