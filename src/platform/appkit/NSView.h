#pragma once

#include "appkit/NSAccessibilityElement.h"
#include "appkit/NSCursor.h"
#include "appkit/NSDragging.h"
#include "appkit/NSEvent.h"
#include "appkit/RetiredWidget.h"
#include "base/CGGeometry.h"
#include "base/RunLoop.h"

#include <memory>
#include <optional>
#include <vector>

class NSPanel;
class QWidget;
class ViewWidget;
struct DrawingList;

enum NSViewAutoresizingMask : unsigned { NSViewWidthSizable = 2, NSViewHeightSizable = 16 };

/// Which pointer events a view is told of. It covers the view's whole bounds.
struct NSTrackingArea {
    static constexpr unsigned mouseEnteredAndExited = 1;
    static constexpr unsigned mouseMoved = 2;
    static constexpr unsigned cursorUpdate = 4;
    static constexpr unsigned activeAlways = 128;
    static constexpr unsigned inVisibleRect = 512;

    unsigned options = 0;
};

/// A rectangle of a window that draws itself and gets its input. Its coordinates have their origin at the lower left
/// corner, y up, unless `isFlipped`. What it draws is recorded, and painted only where it differs from what was painted
/// last. Main thread.
class NSView : public std::enable_shared_from_this<NSView> {
public:
    explicit NSView(const CGRect& frame);
    virtual ~NSView();
    NSView(const NSView&) = delete;
    NSView& operator=(const NSView&) = delete;

    /// In the coordinates of the view it lies in.
    const CGRect& frame() const { return frame_; }
    CGRect bounds() const { return { 0, 0, frame_.width, frame_.height }; }
    virtual void setFrame(const CGRect& frame);
    void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }

    void addSubview(std::shared_ptr<NSView> view);
    const std::vector<std::shared_ptr<NSView>>& subviews() const { return subviews_; }
    NSView* superview() const { return superview_; }
    NSPanel* window() const;
    /// Keeps the view and those around it while it is held: what a view is told may be the end of its window.
    std::shared_ptr<const NSView> hold() const;

    virtual void setHidden(bool hidden);
    bool isHidden() const { return hidden_; }

    virtual bool isFlipped() const { return false; }
    /// Whether a press acts although the program isn't active, as it never is while the user is at a panel.
    virtual bool acceptsFirstMouse() const { return false; }
    /// Draws the whole view into the current context. The rectangle is the part that is asked for.
    virtual void draw(const CGRect& dirty);
    /// Asks for `draw` before the next paint; in a window that doesn't show, when it next does.
    void setNeedsDisplay();
    /// Does now, for the view and those in it, what was asked for.
    void displayIfNeeded();
    /// What `draw` draws now.
    DrawingList record();
    /// What is painted until `draw` is next asked.
    const DrawingList& painted();

    CGPoint convertFromWindow(CGPoint point) const;
    CGPoint convertToWindow(CGPoint point) const;
    CGRect convertToWindow(const CGRect& rect) const;

    void addTrackingArea(const NSTrackingArea& area);
    void removeTrackingAreas();

    /// Where the pointer takes that shape; of rectangles that overlap, the one added last decides. View coordinates.
    void addCursorRect(const CGRect& rect, const NSCursor& cursor);
    /// Adds the view's rectangles afresh: asked for whenever the pointer comes in.
    virtual void resetCursorRects() { }
    /// The pointer came in, to a view whose tracking area asks for that.
    virtual void cursorUpdate(const NSEvent&) { }

    virtual void updateTrackingAreas() { }
    virtual void mouseMoved(const NSEvent&) { }
    virtual void mouseExited(const NSEvent&) { }
    virtual void mouseDown(const NSEvent&) { }
    virtual void mouseDragged(const NSEvent&) { }
    virtual void mouseUp(const NSEvent&) { }
    virtual void rightMouseUp(const NSEvent&) { }
    /// The third button.
    virtual void otherMouseUp(const NSEvent&) { }

    /// Has the view told of what is dragged over it from other programs.
    void registerForDraggedTypes();
    /// What a drop there would do.
    virtual NSDragOperation draggingEntered(const NSDraggingInfo&) { return NSDragOperation::none; }
    /// Told of each movement; the drag's source doesn't move it while it is held still.
    virtual NSDragOperation draggingUpdated(const NSDraggingInfo&) { return NSDragOperation::none; }
    /// It has left, or been given up.
    virtual void draggingExited() { }
    /// False when it can't be done after all.
    virtual bool performDragOperation(const NSDraggingInfo&) { return false; }
    /// The base behaviour lets each subview's autoresizing mask follow the change.
    virtual void resizeSubviews(CGSize oldSize);

    /// To a screen reader: what the view is, and what it draws that is a thing by itself. It is looked at again
    /// whenever `draw` is.
    virtual NSAccessibilityRole accessibilityRole() const { return NSAccessibilityRole::group; }
    virtual std::vector<NSAccessibilityElement> accessibilityChildren() { return {}; }

    /// Asks for `draw` of the view and of those in it; for the layer's own use.
    void redraw();
    /// The pixels to a point have changed; for the layer's own use.
    virtual void rescale();
    /// The toolkit's widget behind the view, for the layer's own use.
    QWidget* widget() const;

private:
    friend class NSPanel;
    friend class ViewWidget;

    struct CursorRect {
        CGRect rect;
        NSCursor cursor;
    };

    void pointerEntered(const NSEvent& event);
    void pointerMoved(const NSEvent& event);
    void place();
    void display();

    CGRect frame_;
    unsigned autoresizingMask_ = 0;
    bool hidden_ = false;
    NSView* superview_ = nullptr;
    NSPanel* window_ = nullptr;
    std::vector<std::shared_ptr<NSView>> subviews_;
    std::unique_ptr<const DrawingList> painted_;
    unsigned trackingOptions_ = 0;
    std::vector<CursorRect> cursorRects_;
    bool needsDisplay_ = false;
    RunLoop::Handle pendingDisplay_ = 0;
    std::unique_ptr<ViewWidget, RetireWidget> widget_;
};
