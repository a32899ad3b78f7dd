#include "x11/BarSurface.h"

#include "base/Clock.h"
#include "base/RunLoop.h"
#include "x11/Struts.h"
#include "x11/ToolkitConnection.h"

#include <QBitmap>
#include <QWidget>

#include <unistd.h>

#include <algorithm>
#include <ranges>

namespace x11 {
namespace {

/// What is left between a bar and the windows that the window manager keeps off it, in points.
constexpr double keptFree = 5;

std::uint64_t now()
{
    return RunLoop::main().clock().nanoseconds();
}

QRect geometry(const Rect& rect)
{
    return { rect.x, rect.y, rect.width, rect.height };
}

/// What is painted half through lies on a dark ground where nothing is behind it.
void layGround(QWidget& widget)
{
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, QColor(0x18, 0x1A, 0x1E));
    widget.setPalette(palette);
    widget.setAttribute(Qt::WA_NoSystemBackground, false);
}

/// What a part of a panel paints, without a ground.
QImage painted(QWidget& widget, const QRect& part)
{
    QImage picture(part.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    widget.render(&picture, {}, part, QWidget::DrawChildren | QWidget::IgnoreMask);
    return picture;
}

/// Half of what the palest panel has: the edge of a round corner lies there.
constexpr int leastAlpha = 64;

QImage shapeOf(const QImage& picture)
{
    QImage mask(picture.size(), QImage::Format_MonoLSB);
    mask.setColorTable({ QColor(Qt::white).rgb(), QColor(Qt::black).rgb() });
    mask.fill(0);
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        uchar* bits = mask.scanLine(y);
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(line[x]) >= leastAlpha)
                bits[x / 8] |= static_cast<uchar>(1 << x % 8);
        }
    }
    return mask;
}

/// Whether what is painted begins at the left edge, in the middle of it.
bool reachesEdges(QWidget& widget)
{
    return qAlpha(painted(widget, { 0, widget.height() / 2, 1, 1 }).pixel(0, 0)) >= leastAlpha;
}

}

BarSurface::BarSurface(Connection& connection, const WindowMirror& mirror, Monitors& monitors, WindowManager& manager)
    : connection_(connection)
    , mirror_(mirror)
    , monitors_(monitors)
    , manager_(manager)
    , keyboard_(mirror, manager)
{
}

BarSurface::Panel* BarSurface::find(const QWidget& widget)
{
    const auto found = std::ranges::find(panels_, &widget, &Panel::widget);
    return found == panels_.end() ? nullptr : &*found;
}

void BarSurface::adopt(QWidget& widget, const host::SurfaceStyle& style, const CGRect& frame)
{
    const Rect rect = monitors_.points().fromScreenSpace(frame);
    if (style.role == host::SurfaceRole::window) {
        widget.setGeometry(geometry(rect));
        return;
    }
    Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus;
    // Not the toolkit's own kind for tooltips: that gets another window when it is shown.
    flags.setFlag(Qt::BypassWindowManagerHint, !host::isBar(style.role));
    flags.setFlag(Qt::WindowTransparentForInput, style.ignoresMouseEvents);
    widget.setWindowFlags(flags);
    widget.setAttribute(Qt::WA_ShowWithoutActivating);
    widget.setAttribute(Qt::WA_TranslucentBackground, !style.isOpaque && canBlend());
    if (!style.isOpaque && !canBlend())
        layGround(widget);
    widget.setGeometry(geometry(rect));
    panels_.push_back(
        { .widget = &widget, .window = static_cast<xcb_window_t>(widget.winId()), .style = style, .frame = rect });
    tellMonitors();
}

void BarSurface::release(QWidget& widget)
{
    giveBackFrom(widget);
    std::erase_if(panels_, [&](const Panel& panel) { return panel.widget == &widget; });
    tellMonitors();
}

void BarSurface::tellMonitors()
{
    std::unordered_set<xcb_window_t> windows;
    for (const Panel& panel : panels_)
        windows.insert(panel.window);
    monitors_.setOwnDocks(std::move(windows));
}

void BarSurface::setRole(QWidget& widget, host::SurfaceRole role)
{
    if (Panel* panel = find(widget))
        panel->style.role = role;
}

std::optional<CGRect> BarSurface::frame(const QWidget& widget)
{
    const QRect rect = widget.geometry();
    return monitors_.points().screenSpace(Rect { rect.x(), rect.y(), rect.width(), rect.height() });
}

void BarSurface::setFrame(QWidget& widget, const CGRect& frame)
{
    Panel* panel = find(widget);
    const Rect rect = monitors_.points().fromScreenSpace(frame);
    if (!panel) {
        widget.setGeometry(geometry(rect));
        return;
    }
    if (panel->frame == rect)
        return;
    panel->frame = rect;
    if (host::isBar(panel->style.role))
        setStrut(*panel);
    const bool isResized = widget.size() != geometry(rect).size();
    widget.setGeometry(geometry(rect));
    if (isResized && widget.isVisible())
        cutOut(*panel);
}

/// Nothing shows through a window that isn't blended with what is behind it. One that isn't opaque is cut to the shape
/// of what it paints, so that what is left free of it isn't dark.
void BarSurface::cutOut(Panel& panel)
{
    if (panel.style.isOpaque || canBlend())
        return;
    const bool isBar = host::isBar(panel.style.role);
    if (isBar && reachesEdges(*panel.widget)) {
        if (!std::exchange(panel.shape, {}).isNull())
            panel.widget->clearMask();
        return;
    }
    // A popup's shape follows from its size; what stands on a floating bar may stand out of it.
    if (!isBar && panel.shape.size() == panel.widget->size())
        return;
    const QImage shape = shapeOf(painted(*panel.widget, panel.widget->rect()));
    if (std::exchange(panel.shape, shape) != shape)
        panel.widget->setMask(QRegion(QBitmap::fromImage(shape)));
}

void BarSurface::contentChanged(QWidget& widget)
{
    Panel* panel = find(widget);
    if (panel && widget.isVisible())
        cutOut(*panel);
}

void BarSurface::followDesktop(bool hasNewDisplays)
{
    const Look look { canBlend(), scale() };
    const auto before = std::exchange(look_, look);
    if (before && before != look && onChange)
        onChange();
    if (!hasNewDisplays)
        return;
    // What a bar reserves depends on what lies beyond it.
    for (const Panel& panel : panels_) {
        if (host::isBar(panel.style.role))
            setStrut(panel);
    }
}

void BarSurface::windowsMoved()
{
    for (Panel& panel : panels_) {
        if (panel.obstacle != XCB_WINDOW_NONE && obstacleOf(panel) != panel.obstacle)
            panel.obstacle = XCB_WINDOW_NONE;
        if (panel.strayedTo && placeOf(panel) != panel.strayedTo)
            panel.strayedTo.reset();
    }
}

void BarSurface::orderFront(QWidget& widget)
{
    Panel* panel = find(widget);
    if (!panel) {
        widget.show();
        widget.raise();
        return;
    }
    if (!widget.isVisible()) {
        describe(*panel);
        cutOut(*panel);
        panel->askedAt = now();
        widget.show();
        raise(*panel);
        return;
    }
    insist(*panel, true);
    putBack(*panel);
    // Asked once for each window in the way: against one that the window manager keeps in front, asking doesn't help.
    const xcb_window_t obstacle = obstacleOf(*panel);
    const bool isNew = obstacle != std::exchange(panel->obstacle, obstacle);
    if (isNew && obstacle != XCB_WINDOW_NONE)
        raise(*panel);
}

/// A window manager that is only just starting can lose a request to map or to unmap a window; then it is made again.
void BarSurface::insist(Panel& panel, bool isShown)
{
    constexpr std::uint64_t patience = 1'000'000'000;
    if (now() - panel.askedAt < patience)
        return;
    const RootChild* unmanaged = mirror_.state().rootChildren.find(panel.window);
    const auto managed = mirror_.state().windows.find(panel.window);
    const bool isMapLost = isShown && unmanaged && !unmanaged->isMapped;
    const bool isUnmapLost = !isShown && managed != mirror_.state().windows.end() && managed->second.isMapped;
    if (isMapLost)
        xcb_map_window(connection_, panel.window);
    if (isUnmapLost)
        xcb_unmap_window(connection_, panel.window);
    if (isMapLost || isUnmapLost) {
        panel.askedAt = now();
        connection_.flush();
    }
}

void BarSurface::orderOut(QWidget& widget)
{
    Panel* panel = find(widget);
    if (!panel) {
        widget.hide();
        return;
    }
    if (!widget.isVisible()) {
        insist(*panel, false);
        return;
    }
    giveBackFrom(widget);
    panel->askedAt = now();
    widget.hide();
}

void BarSurface::takeKeyboard(QWidget& widget)
{
    if (const Panel* panel = find(widget))
        keyboard_.take(panel->window);
    else
        widget.activateWindow();
}

void BarSurface::giveBackKeyboard()
{
    keyboard_.giveBack();
}

void BarSurface::giveBackFrom(const QWidget& widget)
{
    const Panel* panel = find(widget);
    if (panel && panel->window == keyboard_.holder())
        keyboard_.giveBack();
}

/// Raises a panel, and again those of ours that belong in front of it.
void BarSurface::raise(const Panel& panel)
{
    raiseAlone(panel);
    std::vector<const Panel*> higher;
    for (const Panel& other : panels_) {
        if (other.style.level > panel.style.level && other.widget->isVisible()
            && overlapArea(other.frame, panel.frame) > 0)
            higher.push_back(&other);
    }
    std::ranges::stable_sort(higher, {}, [](const Panel* each) { return each->style.level; });
    for (const Panel* other : higher)
        raiseAlone(*other);
}

void BarSurface::raiseAlone(const Panel& panel)
{
    const bool isManaged = manager_.with(
        panel.window, [](WindowRequests& ask, const DesktopState&, const WindowRecord& window) { ask.raise(window); });
    if (isManaged)
        return;
    panel.widget->raise();
    if (xcb_connection_t* connection = toolkitConnection())
        xcb_flush(connection);
}

/// Another program may have moved it. Asked once for each place where it is found: where the window manager has put it
/// there, asking doesn't help.
void BarSurface::putBack(Panel& panel)
{
    const auto place = placeOf(panel);
    if (!host::isBar(panel.style.role) || !place || *place == panel.frame || place == panel.strayedTo)
        return;
    panel.strayedTo = place;
    const auto word = [](int value) { return static_cast<std::uint32_t>(value); };
    const std::uint32_t values[]
        = { word(panel.frame.x), word(panel.frame.y), word(panel.frame.width), word(panel.frame.height) };
    xcb_configure_window(connection_, panel.window,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    connection_.flush();
}

/// Absent while the desktop hasn't heard of its window.
std::optional<Rect> BarSurface::placeOf(const Panel& panel) const
{
    const RootChild* child = mirror_.state().rootChildren.find(rootChildOf(panel.window));
    return child && child->isMapped ? std::optional(child->outer) : std::nullopt;
}

/// The window of another program that covers a part of the panel and isn't meant to; none in the usual case.
xcb_window_t BarSurface::obstacleOf(const Panel& panel) const
{
    const DesktopState& state = mirror_.state();
    const auto above = state.rootChildren.above(rootChildOf(panel.window));
    const auto mayCover = [&](const RootChild& child) {
        if (!child.isMapped || owns(child.id) || overlapArea(child.outer, panel.frame) == 0)
            return true;
        const auto clients = state.clientsIn(child.id);
        return clients.empty() || clients.front()->facts.kind() == WindowKind::dock
            || clients.front()->facts.states.fullScreen;
    };
    const auto obstacle = std::ranges::find_if_not(above, mayCover);
    return obstacle == above.end() ? xcb_window_t(XCB_WINDOW_NONE) : obstacle->id;
}

xcb_window_t BarSurface::rootChildOf(xcb_window_t window) const
{
    const auto known = mirror_.state().windows.find(window);
    return known == mirror_.state().windows.end() ? window : known->second.frame;
}

bool BarSurface::owns(xcb_window_t rootChild) const
{
    // All windows of one connection have the same base, menus and tooltips too.
    const std::uint32_t mask = connection_.setup().resource_id_mask;
    const auto isSameClient = [&](const Panel& panel) { return (panel.window & ~mask) == (rootChild & ~mask); };
    if (std::ranges::any_of(panels_, isSameClient))
        return true;
    return std::ranges::any_of(
        mirror_.state().clientsIn(rootChild), [](const WindowRecord* window) { return window->pid == getpid(); });
}

bool BarSurface::isAnyAt(Point point) const
{
    return std::ranges::any_of(panels_, [&](const Panel& panel) {
        return panel.widget->isVisible() && contains(panel.frame, { point.x, point.y, 1, 1 });
    });
}

// What is written on a panel's window

void BarSurface::setProperty(
    const Panel& panel, xcb_atom_t name, xcb_atom_t type, const std::vector<std::uint32_t>& values) const
{
    if (xcb_connection_t* connection = toolkitConnection())
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, panel.window, name, type, 32,
            static_cast<std::uint32_t>(values.size()), values.data());
}

void BarSurface::describe(const Panel& panel) const
{
    const Atoms& atoms = connection_.atoms();
    if (!host::isBar(panel.style.role)) {
        const bool isTooltip = panel.style.role == host::SurfaceRole::tooltip;
        setProperty(panel, atoms.netWmWindowType, XCB_ATOM_ATOM,
            { isTooltip ? atoms.netWmWindowTypeTooltip : atoms.netWmWindowTypePopupMenu });
        return;
    }
    // The toolkit's list also says that the window can have the focus, and some window managers would give it that.
    setProperty(panel, atoms.wmProtocols, XCB_ATOM_ATOM, { atoms.wmDeleteWindow });
    // Written here rather than asked of the toolkit, which leaves it out for a window without a frame.
    setProperty(panel, atoms.netWmWindowType, XCB_ATOM_ATOM, { atoms.netWmWindowTypeDock });
    setProperty(panel, atoms.netWmDesktop, XCB_ATOM_CARDINAL, { allDesktops });
    setProperty(panel, atoms.netWmState, XCB_ATOM_ATOM,
        { atoms.netWmStateSticky, atoms.netWmStateSkipTaskbar, atoms.netWmStateSkipPager });
    setStrut(panel);
}

void BarSurface::setStrut(const Panel& panel) const
{
    const int gap = monitors_.points().pixels(keptFree);
    std::optional<Strut> strut;
    if (panel.style.role == host::SurfaceRole::topBar)
        strut = topStrut(grown(panel.frame, { 0, 0, 0, gap }), monitors_);
    if (panel.style.role == host::SurfaceRole::bottomBar)
        strut = bottomStrut(grown(panel.frame, { 0, 0, gap, 0 }), monitors_);
    const Strut values = strut.value_or(Strut {});
    const Atoms& atoms = connection_.atoms();
    setProperty(panel, atoms.netWmStrutPartial, XCB_ATOM_CARDINAL, { values.begin(), values.end() });
    setProperty(panel, atoms.netWmStrut, XCB_ATOM_CARDINAL, { values.begin(), values.begin() + 4 });
}

void BarSurface::setBackdrop(QWidget& widget, const CGRect& rect)
{
    const Panel* panel = find(widget);
    if (!panel)
        return;
    const auto part
        = [this](double length) { return static_cast<std::uint32_t>(std::max(0, monitors_.points().pixels(length))); };
    if (rect.width > 0 && rect.height > 0)
        setProperty(*panel, connection_.atoms().kdeBlurBehindRegion, XCB_ATOM_CARDINAL,
            { part(rect.x), part(rect.y), part(rect.width), part(rect.height) });
    else if (xcb_connection_t* connection = toolkitConnection())
        xcb_delete_property(connection, panel->window, connection_.atoms().kdeBlurBehindRegion);
}

}
