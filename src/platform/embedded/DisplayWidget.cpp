#include "embedded/DisplayWidget.h"

#include "embedded/DisplayPainter.h"
#include "embedded/EmbeddedDesktop.h"
#include "embedded/WindowParts.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace embedded {

namespace {

/// How much smaller a picture gets on its way to being blurred.
constexpr int blur = 12;

QImage blurred(const QImage& picture)
{
    const QSize small(std::max(1, picture.width() / blur), std::max(1, picture.height() / blur));
    return picture.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}

DisplayWidget::DisplayWidget(EmbeddedDesktop& desktop, std::size_t screen, QWidget* parent)
    : QWidget(parent)
    , desktop_(desktop)
    , screen_(screen)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void DisplayWidget::sceneChanged()
{
    scene_ = {};
    update();
}

CGPoint DisplayWidget::screenPoint(const QPointF& point) const
{
    const CGRect& frame = desktop_.world().screens().all().at(screen_).frame;
    return { frame.x + point.x(), frame.maxY() - point.y() - 1 };
}

void DisplayWidget::paintEvent(QPaintEvent*)
{
    if (scene_.isNull())
        scene_ = DisplayPainter(desktop_.world(), screen_).picture();
    QPainter painter(this);
    painter.drawImage(0, 0, scene_);
    desktop_.statusItems().paint(painter, screen_);
    paintBackdrops(painter);
}

void DisplayWidget::paintBackdrops(QPainter& painter)
{
    for (const Panel& panel : desktop_.surfaces().panels()) {
        if (!panel.isVisible || panel.backdrop.width <= 0 || panel.widget->parentWidget() != this)
            continue;
        const QRectF part(panel.backdrop.x, panel.backdrop.y, panel.backdrop.width, panel.backdrop.height);
        const QRect area = part.translated(panel.widget->pos()).toAlignedRect().intersected(rect());
        painter.drawImage(area.topLeft(), blurred(scene_.copy(area)));
    }
}

void DisplayWidget::mousePressEvent(QMouseEvent* event)
{
    setFocus();
    if (const host::StatusItemFacts* item = desktop_.statusItems().itemAt(event->position(), screen_)) {
        pressStatusItem(*item);
        return;
    }
    World& world = desktop_.world();
    const DisplayPainter painter(world, screen_);
    if (const Window* window = painter.windowAt(event->position()))
        press(window->number, painter.frameOf(*window), event->position());
    else if (const RunningProcess* finder = world.processNamed(finderIdentifier))
        world.activate(finder->pid());
}

void DisplayWidget::pressStatusItem(const host::StatusItemFacts& item)
{
    const QPoint corner = mapToGlobal(QPoint());
    if (item.onPress)
        item.onPress(desktop_.statusItems().place(item).toAlignedRect().translated(corner), rect().translated(corner));
}

void DisplayWidget::press(std::uint32_t window, const QRectF& frame, const QPointF& point)
{
    World& world = desktop_.world();
    const WindowParts parts(frame);
    if (parts.lights[WindowParts::close].contains(point)) {
        world.close(window);
        return;
    }
    if (parts.lights[WindowParts::minimise].contains(point)) {
        world.setMinimised(window, true);
        return;
    }
    world.focus(window);
    if (parts.lights[WindowParts::fullScreen].contains(point))
        world.setFullScreen(window, true);
    else if (parts.titleBar.contains(point))
        drag_ = Drag { window, point - frame.topLeft() };
}

void DisplayWidget::mouseMoveEvent(QMouseEvent* event)
{
    World& world = desktop_.world();
    const Window* window = drag_ ? world.window(drag_->window) : nullptr;
    if (!window)
        return;
    const CGRect corner = world.screens().flipped(world.screens().all().at(screen_).frame);
    const QPointF origin = event->position() - drag_->grip;
    // A title bar stays below the menu bar.
    const double top = std::max(origin.y(), world.screens().all().at(screen_).menuBarHeight);
    world.setBounds(
        drag_->window, { corner.x + origin.x(), corner.y + top, window->bounds.width, window->bounds.height });
}

void DisplayWidget::mouseReleaseEvent(QMouseEvent*)
{
    drag_.reset();
}

/// Control with an arrow goes to the neighbouring space; anything else is typed into the focused window.
void DisplayWidget::keyPressEvent(QKeyEvent* event)
{
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    if (isControl && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        showNeighbourSpace(event->key() == Qt::Key_Left ? -1 : 1);
        return;
    }
    World& world = desktop_.world();
    const Window* focused = world.frontmost() ? world.focusedWindow(*world.frontmost()) : nullptr;
    if (focused && !event->text().isEmpty() && event->text().front().isPrint())
        world.type(focused->number, event->text().toStdString());
}

void DisplayWidget::showNeighbourSpace(int step)
{
    const Screen& screen = desktop_.world().screens().all().at(screen_);
    const auto current = std::find_if(
        screen.spaces.begin(), screen.spaces.end(), [&](const auto& space) { return space.id == screen.currentSpace; });
    const auto index = current - screen.spaces.begin() + step;
    if (index >= 0 && index < static_cast<std::ptrdiff_t>(screen.spaces.size()))
        desktop_.world().showSpace(screen.spaces[static_cast<std::size_t>(index)].id);
}

}
