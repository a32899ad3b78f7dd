#include "appkit/NSView.h"

#include "appkit/AccessibleView.h"
#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"
#include "appkit/NSPanel.h"
#include "appkit/Pixels.h"
#include "base/RunLoop.h"
#include "host/Desktop.h"
#include "host/Surfaces.h"

#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWidget>

#include <algorithm>

namespace {

/// A source that moves files itself may only copy here: what is in the Trash is there.
void answer(QDropEvent& event, NSDragOperation operation)
{
    if (operation == NSDragOperation::none) {
        event.setDropAction(Qt::IgnoreAction);
        event.ignore();
        return;
    }
    event.setDropAction(event.possibleActions().testFlag(Qt::MoveAction) ? Qt::MoveAction : event.proposedAction());
    event.accept();
}

}

/// The toolkit's widget of a view: it carries paints, pointer events, drags and what screen readers ask over.
class ViewWidget final : public QWidget, public AccessibleSource {
public:
    explicit ViewWidget(NSView& view)
        : view_(&view)
    {
        AccessibleView::start();
    }

    /// The view goes, ahead of its widget.
    void forgetView() { view_ = nullptr; }

private:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent*) override { AccessibleView::update(*this); }
    void hideEvent(QHideEvent*) override { AccessibleView::update(*this); }

    NSAccessibilityRole accessibilityRole() const override;
    std::vector<NSAccessibilityElement> accessibilityChildren() const override;
    QRect pixels(const CGRect& frame) const override;
    void carryOut(const std::function<void()>& press) override;

    template <typename Deliver>
    void deliver(const Deliver& deliver);

    NSView* view_;
    /// The buttons that went down here: the press that closes a menu doesn't come here, but its release does.
    Qt::MouseButtons pressed_;
};

namespace {

NSEvent eventAt(const NSView& view, QPointF position)
{
    // A pixel is told by the corner that has the smallest coordinates, so that it is in the view that it belongs to.
    const double scale = Pixels::scale();
    const double y = view.isFlipped() ? position.y() / scale : view.frame().height - (position.y() + 1) / scale;
    return { view.convertToWindow(CGPoint { position.x() / scale, y }) };
}

/// A rectangle of the view in its widget's pixels.
QRect pixelsIn(const NSView& view, const CGRect& rect)
{
    const double top = view.isFlipped() ? rect.y : view.frame().height - rect.maxY();
    return Pixels::from(CGRect { rect.x, top, rect.width, rect.height });
}

NSDraggingInfo draggingInfo(const NSView& view, const QDropEvent& event)
{
    NSDraggingInfo info { eventAt(view, event.position()).locationInWindow, {} };
    for (const QUrl& url : event.mimeData()->urls())
        if (url.isLocalFile())
            info.fileURLs.push_back(NSURL::fileURLWithPath(url.toLocalFile().toStdString()));
    return info;
}

}

/// Gives the view something to do, in a turn of its own. The view is there until it has done it, whatever goes
/// meanwhile.
template <typename Deliver>
void ViewWidget::deliver(const Deliver& deliver)
{
    if (!view_)
        return;
    const auto held = view_->hold();
    const RunLoop::Turn turn;
    deliver(*view_);
}

void ViewWidget::paintEvent(QPaintEvent* event)
{
    deliver([&](NSView& view) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipRegion(event->region());
        painter.scale(Pixels::scale(), Pixels::scale());
        DrawingPainter context(painter, view.frame().size(), view.isFlipped());
        view.painted().replay(context);
    });
}

void ViewWidget::mousePressEvent(QMouseEvent* event)
{
    pressed_ |= event->button();
    if (event->button() != Qt::LeftButton)
        return;
    deliver([&](NSView& view) {
        if (view.acceptsFirstMouse())
            view.mouseDown(eventAt(view, event->position()));
    });
}

void ViewWidget::mouseMoveEvent(QMouseEvent* event)
{
    deliver([&](NSView& view) {
        if (event->buttons() & Qt::LeftButton)
            view.mouseDragged(eventAt(view, event->position()));
        else
            view.pointerMoved(eventAt(view, event->position()));
    });
}

void ViewWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!pressed_.testFlag(event->button()))
        return;
    pressed_ &= ~Qt::MouseButtons(event->button());
    deliver([&](NSView& view) {
        const NSEvent at = eventAt(view, event->position());
        if (event->button() == Qt::LeftButton)
            view.mouseUp(at);
        if (event->button() == Qt::RightButton)
            view.rightMouseUp(at);
        if (event->button() == Qt::MiddleButton)
            view.otherMouseUp(at);
    });
}

/// The platform tells of the pointer's first place inside as a move.
void ViewWidget::enterEvent(QEnterEvent* event)
{
    NSCursor::entered(*this);
    deliver([&](NSView& view) { view.pointerEntered(eventAt(view, event->position())); });
}

void ViewWidget::leaveEvent(QEvent*)
{
    NSCursor::left(*this);
    if (hasMouseTracking())
        deliver([&](NSView& view) { view.mouseExited(eventAt(view, mapFromGlobal(QCursor::pos()))); });
}

/// Accepted wherever it comes in, since the toolkit tells of no further movement otherwise; a movement says what a drop
/// there would do.
void ViewWidget::dragEnterEvent(QDragEnterEvent* event)
{
    deliver([&](NSView& view) { view.draggingEntered(draggingInfo(view, *event)); });
    event->accept();
}

void ViewWidget::dragMoveEvent(QDragMoveEvent* event)
{
    deliver([&](NSView& view) { answer(*event, view.draggingUpdated(draggingInfo(view, *event))); });
}

void ViewWidget::dragLeaveEvent(QDragLeaveEvent*)
{
    deliver([](NSView& view) { view.draggingExited(); });
}

void ViewWidget::dropEvent(QDropEvent* event)
{
    deliver([&](NSView& view) {
        const bool isDone = view.performDragOperation(draggingInfo(view, *event));
        answer(*event, isDone ? NSDragOperation::move : NSDragOperation::none);
    });
}

NSAccessibilityRole ViewWidget::accessibilityRole() const
{
    return view_ ? view_->accessibilityRole() : NSAccessibilityRole::group;
}

std::vector<NSAccessibilityElement> ViewWidget::accessibilityChildren() const
{
    return view_ ? view_->accessibilityChildren() : std::vector<NSAccessibilityElement>();
}

QRect ViewWidget::pixels(const CGRect& frame) const
{
    return view_ ? pixelsIn(*view_, frame) : QRect();
}

void ViewWidget::carryOut(const std::function<void()>& press)
{
    deliver([&](NSView&) { press(); });
}

NSView::NSView(const CGRect& frame)
    : frame_(frame)
    , widget_(new ViewWidget(*this))
{
    place();
}

NSView::~NSView()
{
    RunLoop::main().cancel(pendingDisplay_);
    widget_->forgetView();
    for (const auto& view : subviews_) {
        view->superview_ = nullptr;
        view->widget_->setParent(nullptr);
    }
}

QWidget* NSView::widget() const
{
    return widget_.get();
}

void NSView::setFrame(const CGRect& frame)
{
    const CGSize oldSize = frame_.size();
    frame_ = frame;
    place();
    if (frame.size() == oldSize)
        return;
    resizeSubviews(oldSize);
    updateTrackingAreas();
    setNeedsDisplay();
}

void NSView::addSubview(std::shared_ptr<NSView> view)
{
    view->superview_ = this;
    view->widget_->setParent(widget_.get());
    view->place();
    view->widget_->setVisible(!view->hidden_);
    view->updateTrackingAreas();
    subviews_.push_back(std::move(view));
}

NSPanel* NSView::window() const
{
    return superview_ ? superview_->window() : window_;
}

std::shared_ptr<const NSView> NSView::hold() const
{
    return superview_ ? superview_->hold() : weak_from_this().lock();
}

void NSView::setHidden(bool hidden)
{
    hidden_ = hidden;
    if (superview_)
        widget_->setVisible(!hidden);
}

void NSView::draw(const CGRect&) { }

void NSView::setNeedsDisplay()
{
    needsDisplay_ = true;
    if (!pendingDisplay_)
        pendingDisplay_ = RunLoop::main().perform([this] { display(); });
}

void NSView::displayIfNeeded()
{
    RunLoop::main().cancel(pendingDisplay_);
    display();
    for (const auto& view : subviews_)
        view->displayIfNeeded();
}

void NSView::display()
{
    pendingDisplay_ = 0;
    const NSPanel* shownIn = window();
    if (!needsDisplay_ || (shownIn && !shownIn->isVisible()))
        return;
    needsDisplay_ = false;
    AccessibleView::update(*widget_);
    auto now = std::make_unique<const DrawingList>(record());
    if (painted_ && *now == *painted_)
        return;
    painted_ = std::move(now);
    widget_->update();
    if (window())
        host::Desktop::current().surfaces().contentChanged(*window()->widget());
}

const DrawingList& NSView::painted()
{
    if (!painted_)
        painted_ = std::make_unique<const DrawingList>(record());
    return *painted_;
}

DrawingList NSView::record()
{
    DrawingRecorder recorder;
    const NSGraphicsContext::Scope scope(recorder);
    draw(bounds());
    return std::move(recorder.list);
}

/// Puts the widget where the frame says, in the toolkit's coordinates: y down.
void NSView::place()
{
    widget_->setGeometry(superview_ ? pixelsIn(*superview_, frame_) : Pixels::from(frame_));
}

void NSView::redraw()
{
    setNeedsDisplay();
    for (const auto& view : subviews_)
        view->redraw();
}

void NSView::rescale()
{
    place();
    for (const auto& view : subviews_)
        view->rescale();
    setNeedsDisplay();
    widget_->update();
}

CGPoint NSView::convertToWindow(CGPoint point) const
{
    const CGPoint inFrame { point.x, isFlipped() ? frame_.height - point.y : point.y };
    if (!superview_)
        return inFrame;
    const double top = superview_->isFlipped() ? frame_.y + frame_.height - inFrame.y : frame_.y + inFrame.y;
    return superview_->convertToWindow(CGPoint { frame_.x + inFrame.x, top });
}

CGPoint NSView::convertFromWindow(CGPoint point) const
{
    const CGPoint origin = convertToWindow(CGPoint {});
    return { point.x - origin.x, isFlipped() ? origin.y - point.y : point.y - origin.y };
}

CGRect NSView::convertToWindow(const CGRect& rect) const
{
    const CGPoint a = convertToWindow(rect.origin());
    const CGPoint b = convertToWindow(CGPoint { rect.maxX(), rect.maxY() });
    return { a.x, std::min(a.y, b.y), rect.width, rect.height };
}

void NSView::addTrackingArea(const NSTrackingArea& area)
{
    trackingOptions_ |= area.options;
    widget_->setMouseTracking((trackingOptions_ & NSTrackingArea::mouseMoved) != 0);
}

void NSView::registerForDraggedTypes()
{
    widget_->setAcceptDrops(true);
}

void NSView::removeTrackingAreas()
{
    trackingOptions_ = 0;
    widget_->setMouseTracking(false);
}

void NSView::addCursorRect(const CGRect& rect, const NSCursor& cursor)
{
    cursorRects_.push_back({ rect, cursor });
}

void NSView::pointerEntered(const NSEvent& event)
{
    cursorRects_.clear();
    resetCursorRects();
    if (trackingOptions_ & NSTrackingArea::cursorUpdate)
        cursorUpdate(event);
    pointerMoved(event);
}

void NSView::pointerMoved(const NSEvent& event)
{
    const CGPoint point = convertFromWindow(event.locationInWindow);
    const auto holds = [&](const CursorRect& area) { return CGRectContainsPoint(area.rect, point); };
    const auto area = std::find_if(cursorRects_.rbegin(), cursorRects_.rend(), holds);
    if (area != cursorRects_.rend())
        area->cursor.set();
    if (trackingOptions_ & NSTrackingArea::mouseMoved)
        mouseMoved(event);
}

void NSView::resizeSubviews(CGSize oldSize)
{
    for (const auto& view : subviews_) {
        CGRect frame = view->frame_;
        if (view->autoresizingMask_ & NSViewWidthSizable)
            frame.width += frame_.width - oldSize.width;
        if (view->autoresizingMask_ & NSViewHeightSizable)
            frame.height += frame_.height - oldSize.height;
        view->setFrame(frame);
    }
}
