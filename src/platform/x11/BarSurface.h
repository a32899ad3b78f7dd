#pragma once

#include "host/Surfaces.h"
#include "x11/KeyboardFocus.h"
#include "x11/Monitors.h"

#include <QImage>

#include <optional>
#include <vector>

namespace x11 {

/// Our own panels as windows of the desktop. A bar is a dock with a strut; the others are popups that the window
/// manager leaves alone: no list or pager has them, and they never get the keyboard. What makes a window one or the
/// other is set on the toolkit's connection, ahead of its being shown, so that the window manager never sees it
/// otherwise. An ordinary window is left to the toolkit and the window manager.
class BarSurface final : public host::Surfaces {
public:
    BarSurface(Connection& connection, const WindowMirror& mirror, Monitors& monitors, WindowManager& manager);

    void adopt(QWidget& widget, const host::SurfaceStyle& style, const CGRect& frame) override;
    void release(QWidget& widget) override;
    void setRole(QWidget& widget, host::SurfaceRole role) override;
    void setFrame(QWidget& widget, const CGRect& frame) override;
    std::optional<CGRect> frame(const QWidget& widget) override;
    void orderFront(QWidget& widget) override;
    void orderOut(QWidget& widget) override;
    void contentChanged(QWidget& widget) override;
    void takeKeyboard(QWidget& widget) override;
    void giveBackKeyboard() override;
    void setBackdrop(QWidget& widget, const CGRect& rect) override;
    bool canBlend() override { return mirror_.state().isComposited; }
    double scale() override { return monitors_.points().scale; }

    /// What the desktop's panels depend on may have changed.
    void followDesktop(bool hasNewDisplays);
    /// Windows may have moved, or changed their order.
    void windowsMoved();

    /// Whether a child of the root is a window of this program, or the window manager's frame of one.
    bool owns(xcb_window_t rootChild) const;
    /// Whether one of our panels lies there, seen or covered.
    bool isAnyAt(Point point) const;

private:
    struct Panel {
        QWidget* widget;
        xcb_window_t window;
        host::SurfaceStyle style;
        Rect frame;
        /// What it was cut to; null while it is whole.
        QImage shape {};
        /// The window in front of this one that raising it hasn't got it past.
        xcb_window_t obstacle = XCB_WINDOW_NONE;
        /// Where it lay when it was last asked to come back, and hasn't.
        std::optional<Rect> strayedTo {};
        /// When its window was last asked to be mapped or unmapped, in nanoseconds of the clock.
        std::uint64_t askedAt = 0;
    };

    /// What all panels are made for.
    struct Look {
        bool canBlend;
        double scale;
        bool operator==(const Look&) const = default;
    };

    Panel* find(const QWidget& widget);
    void describe(const Panel& panel) const;
    void setStrut(const Panel& panel) const;
    void setProperty(
        const Panel& panel, xcb_atom_t name, xcb_atom_t type, const std::vector<std::uint32_t>& values) const;
    void cutOut(Panel& panel);
    void tellMonitors();
    void giveBackFrom(const QWidget& widget);
    void insist(Panel& panel, bool isShown);
    void raise(const Panel& panel);
    void raiseAlone(const Panel& panel);
    void putBack(Panel& panel);
    std::optional<Rect> placeOf(const Panel& panel) const;
    xcb_window_t obstacleOf(const Panel& panel) const;
    xcb_window_t rootChildOf(xcb_window_t window) const;

    Connection& connection_;
    const WindowMirror& mirror_;
    Monitors& monitors_;
    WindowManager& manager_;
    std::vector<Panel> panels_;
    std::optional<Look> look_;
    KeyboardFocus keyboard_;
};

}
