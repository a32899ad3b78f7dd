#pragma once

#include "appkit/NSColor.h"
#include "appkit/RetiredWidget.h"
#include "base/CGGeometry.h"
#include "host/Surfaces.h"

#include <cstddef>
#include <memory>

class NSView;
class QWidget;

/// What a panel is for; the desktop puts each kind in its own way.
using NSPanelRole = host::SurfaceRole;

/// A window of the program that never activates it, stays when another program is active, floats above ordinary
/// windows, on all spaces, can't be moved by its background and stands in no list of windows. Its frame is in screen
/// space. How it looks to the desktop (level, opacity) is settled before it is first ordered in. Main thread.
class NSPanel {
public:
    explicit NSPanel(const CGRect& contentRect);
    virtual ~NSPanel();
    NSPanel(const NSPanel&) = delete;
    NSPanel& operator=(const NSPanel&) = delete;

    virtual bool canBecomeKey() const { return true; }

    const CGRect& frame() const { return frame_; }
    void setFrame(const CGRect& frame, bool display);
    /// The view takes the window's size.
    void setContentView(std::shared_ptr<NSView> view);
    const std::shared_ptr<NSView>& contentView() const { return contentView_; }

    void setOpaque(bool opaque) { style_.isOpaque = opaque; }
    void setBackgroundColor(const NSColor& color);
    void setLevel(int level) { style_.level = level; }
    /// Without one it is a popup. A bar may go to the other edge at any time; its frame is set after that.
    void setRole(NSPanelRole role);
    void setIgnoresMouseEvents(bool ignores) { style_.ignoresMouseEvents = ignores; }

    /// In front of its level, without the keyboard.
    void orderFrontRegardless();
    void orderOut();
    bool isVisible() const { return visible_; }

    /// Has the window get what is typed. False where it won't or the program isn't active.
    bool makeKey();
    /// No view of the window gets what is typed any more.
    void makeFirstResponder(std::nullptr_t);

    CGRect convertToScreen(const CGRect& rect) const;
    CGPoint convertPointFromScreen(CGPoint point) const { return { point.x - frame_.x, point.y - frame_.y }; }

    /// The toolkit's widget behind the window, for the layer's own use. Another one after `remakeAll`.
    QWidget* widget() const { return widget_.get(); }
    /// The desktop puts panels up in another way than before: every window becomes one of that way.
    static void remakeAll();
    /// What every view draws may have changed.
    static void redrawAll();

private:
    void makeWidget();
    void remake();
    void putUp();

    CGRect frame_;
    host::SurfaceStyle style_;
    bool hasBackground_ = true;
    bool adopted_ = false;
    bool visible_ = false;
    std::shared_ptr<NSView> contentView_;
    std::unique_ptr<QWidget, RetireWidget> widget_;
};
