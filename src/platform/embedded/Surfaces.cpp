#include "embedded/Surfaces.h"

#include "embedded/World.h"

#include <QMdiSubWindow>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace embedded {

namespace {

bool isWindow(const Panel& panel)
{
    return panel.style.role == host::SurfaceRole::window;
}

}

QWidget& Stage::outermost(QWidget& widget)
{
    auto* titled = qobject_cast<QMdiSubWindow*>(widget.parentWidget());
    return titled ? *titled : widget;
}

void Surfaces::adopt(QWidget& widget, const host::SurfaceStyle& style, const CGRect& frame)
{
    panels_.push_back({ &widget, style, frame, false, {} });
    if (isWindow(panels_.back())) {
        place(panels_.back());
        return;
    }
    widget.setAttribute(Qt::WA_ShowWithoutActivating);
    widget.setAttribute(Qt::WA_TransparentForMouseEvents, style.ignoresMouseEvents);
    if (!style.isOpaque)
        widget.setAttribute(Qt::WA_TranslucentBackground);
    if (!stage_)
        widget.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    place(panels_.back());
}

void Surfaces::release(QWidget& widget)
{
    giveBackFrom(widget);
    std::erase_if(panels_, [&](const Panel& panel) { return panel.widget == &widget; });
    if (!stage_)
        return;
    stage_->letGo(widget);
    stage_->panelsChanged();
}

void Surfaces::setRole(QWidget& widget, host::SurfaceRole role)
{
    if (Panel* panel = find(widget))
        panel->style.role = role;
}

void Surfaces::setFrame(QWidget& widget, const CGRect& frame)
{
    Panel* panel = find(widget);
    if (!panel)
        return;
    panel->frame = frame;
    place(*panel);
    if (stage_)
        stage_->panelsChanged();
}

std::optional<CGRect> Surfaces::frame(const QWidget& widget)
{
    if (stage_)
        return world_.screens().flipped(stage_->place(widget));
    const QRectF rect = widget.geometry();
    return world_.screens().flipped({ rect.x(), rect.y(), rect.width(), rect.height() });
}

void Surfaces::orderFront(QWidget& widget)
{
    Panel* panel = find(widget);
    if (!panel)
        return;
    const int level = panel->style.level;
    const auto top = std::find_if(
        panels_.begin(), panels_.end(), [&](const Panel& each) { return each.isVisible && each.style.level <= level; });
    if (panel->isVisible && top->widget == &widget)
        return;

    Panel moved = *panel;
    moved.isVisible = true;
    std::erase_if(panels_, [&](const Panel& each) { return each.widget == &widget; });
    const auto place
        = std::find_if(panels_.begin(), panels_.end(), [&](const Panel& each) { return each.style.level <= level; });
    panels_.insert(place, moved);
    widget.show();
    Stage::outermost(widget).show();
    stack();
}

void Surfaces::orderOut(QWidget& widget)
{
    Panel* panel = find(widget);
    if (!panel)
        return;
    giveBackFrom(widget);
    panel->isVisible = false;
    Stage::outermost(widget).hide();
    if (stage_)
        stage_->panelsChanged();
}

/// While a panel has the keyboard, this program is the one in front.
void Surfaces::takeKeyboard(QWidget& widget)
{
    turnTo(widget);
    widget.activateWindow();
    if (stage_ && isWindow(*find(widget)))
        (widget.focusWidget() ? *widget.focusWidget() : widget).setFocus();
}

void Surfaces::turnTo(QWidget& widget)
{
    const auto front = world_.frontmost();
    if (!keyboard_ || front != getpid())
        keyboard_ = Keyboard { &widget, front };
    keyboard_->holder = &widget;
    world_.activate(getpid());
}

void Surfaces::giveBackKeyboard()
{
    if (!keyboard_)
        return;
    const Keyboard keyboard = *std::exchange(keyboard_, std::nullopt);
    if (stage_)
        stage_->takeBackKeyboard(*keyboard.holder);
    if (world_.frontmost() != getpid())
        return;
    const RunningProcess* previous = keyboard.previous ? world_.process(*keyboard.previous) : nullptr;
    if (previous && !previous->record->isHidden)
        world_.activate(previous->pid());
    else
        world_.giveWay(getpid());
}

void Surfaces::giveBackFrom(const QWidget& widget)
{
    if (keyboard_ && keyboard_->holder == &widget)
        giveBackKeyboard();
}

void Surfaces::setBackdrop(QWidget& widget, const CGRect& rect)
{
    Panel* panel = find(widget);
    if (!panel)
        return;
    panel->backdrop = rect;
    if (stage_)
        stage_->panelsChanged();
}

void Surfaces::setStage(Stage* stage)
{
    stage_ = stage;
    for (const Panel& panel : panels_) {
        if (!stage_) {
            panel.widget->setParent(nullptr);
            continue;
        }
        place(panel);
        Stage::outermost(*panel.widget).setVisible(panel.isVisible);
    }
    stack();
}

const Panel* Surfaces::find(const QWidget& widget) const
{
    const auto place
        = std::find_if(panels_.begin(), panels_.end(), [&](const Panel& panel) { return panel.widget == &widget; });
    return place == panels_.end() ? nullptr : &*place;
}

Panel* Surfaces::find(const QWidget& widget)
{
    return const_cast<Panel*>(std::as_const(*this).find(widget));
}

void Surfaces::place(const Panel& panel) const
{
    const CGRect frame = world_.screens().flipped(panel.frame);
    if (stage_)
        stage_->put(*panel.widget, frame, isWindow(panel));
    else
        panel.widget->setGeometry(
            QRectF(frame.x, frame.y, std::max(1.0, frame.width), std::max(1.0, frame.height)).toRect());
}

/// Windows of the toolkit are raised only on a stage, where it costs nothing and nobody else is in the way.
void Surfaces::stack() const
{
    if (!stage_)
        return;
    for (auto panel = panels_.rbegin(); panel != panels_.rend(); ++panel)
        Stage::outermost(*panel->widget).raise();
    stage_->panelsChanged();
}

}
