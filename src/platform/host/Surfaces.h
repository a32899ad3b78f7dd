#pragma once

#include "base/CGGeometry.h"

#include <cstdint>
#include <functional>
#include <optional>

class QWidget;

namespace host {

/// What a panel is for. A bar lies along that edge of its display. A window is no panel but an ordinary window, an
/// alert included: it has a title, stands in the desktop's lists, and the user moves, resizes and closes it.
enum class SurfaceRole : std::uint8_t { bottomBar, topBar, tooltip, popup, results, window };

constexpr bool isBar(SurfaceRole role)
{
    return role == SurfaceRole::bottomBar || role == SurfaceRole::topBar;
}

/// What a panel asks of the desktop.
struct SurfaceStyle {
    SurfaceRole role = SurfaceRole::popup;
    /// The window level: of two panels the higher one is in front.
    int level = 0;
    bool isOpaque = true;
    bool ignoresMouseEvents = false;
};

/// How our own panels are put on the desktop. A widget is the toolkit's window of one panel; it isn't owned here, and
/// is released before it dies. Main thread.
class Surfaces {
public:
    virtual ~Surfaces() = default;

    /// Makes a panel of the widget, or has an ordinary window where its role says so: that one has the toolkit's flags,
    /// title and sizes already, and its frame is that of its content. Before it is first shown.
    virtual void adopt(QWidget& widget, const SurfaceStyle& style, const CGRect& frame) = 0;
    virtual void release(QWidget& widget) = 0;

    /// A bar goes to the other edge. Its frame follows.
    virtual void setRole(QWidget& widget, SurfaceRole role) = 0;
    /// Screen space. A bar keeps other windows' maximised frames 5 points off itself where the desktop has a way to say
    /// so: a window can be resized by a little more than its frame.
    virtual void setFrame(QWidget& widget, const CGRect& frame) = 0;
    /// Where the user has put an ordinary window: its content, in screen space. Absent where that can't be known.
    virtual std::optional<CGRect> frame(const QWidget& /*widget*/) { return std::nullopt; }
    /// Shows the panel in front of its level without taking the keyboard. Costs nothing when it is there already.
    virtual void orderFront(QWidget& widget) = 0;
    virtual void orderOut(QWidget& widget) = 0;
    /// The panel is about to paint something else than before.
    virtual void contentChanged(QWidget& /*widget*/) { }

    /// Has a panel that shows get what is typed, until it is given back, it goes, or the user turns to another window.
    /// An ordinary window comes to the front with it.
    virtual void takeKeyboard(QWidget& widget) = 0;
    /// Returns the keyboard to the window that had it. Nothing where no panel has it any more: then it stays with the
    /// window that it has gone to, or is on its way to because of what the user last did.
    virtual void giveBackKeyboard() = 0;

    /// Paints nothing by itself; asks the desktop to blur what is behind `rect` (widget coordinates, y down), or stops
    /// asking with an empty one.
    virtual void setBackdrop(QWidget& /*widget*/, const CGRect& /*rect*/) { }
    /// Whether a panel that isn't opaque shows what is behind it.
    virtual bool canBlend() { return false; }
    /// The toolkit's pixels to a point.
    virtual double scale() { return 1; }

    /// Set by the layer: `canBlend` or `scale` has another answer. Panels keep to the one that they were adopted under,
    /// so each is to be made anew.
    std::function<void()> onChange;
};

}
