#include "appkit/NSPanel.h"

#include "appkit/NSApplication.h"
#include "appkit/NSView.h"
#include "host/Desktop.h"
#include "host/Surfaces.h"

#include <QWidget>

#include <utility>
#include <vector>

namespace {

host::Surfaces& surfaces()
{
    return host::Desktop::current().surfaces();
}

std::vector<NSPanel*>& windows()
{
    static std::vector<NSPanel*> all;
    return all;
}

}

NSPanel::NSPanel(const CGRect& contentRect)
    : frame_(contentRect)
{
    makeWidget();
    windows().push_back(this);
}

NSPanel::~NSPanel()
{
    std::erase(windows(), this);
    if (adopted_ && host::Desktop::hasCurrent())
        surfaces().release(*widget_);
    if (contentView_) {
        contentView_->window_ = nullptr;
        contentView_->widget()->setParent(nullptr);
    }
}

void NSPanel::setFrame(const CGRect& frame, bool display)
{
    if (frame == frame_)
        return;
    frame_ = frame;
    if (contentView_)
        contentView_->setFrame({ 0, 0, frame.width, frame.height });
    if (contentView_ && display && visible_)
        contentView_->displayIfNeeded();
    if (adopted_)
        surfaces().setFrame(*widget_, frame);
}

void NSPanel::setContentView(std::shared_ptr<NSView> view)
{
    contentView_ = std::move(view);
    contentView_->window_ = this;
    contentView_->widget()->setParent(widget_.get());
    contentView_->setFrame({ 0, 0, frame_.width, frame_.height });
    contentView_->widget()->show();
}

void NSPanel::setRole(NSPanelRole role)
{
    if (role == style_.role)
        return;
    style_.role = role;
    if (adopted_)
        surfaces().setRole(*widget_, role);
}

void NSPanel::setBackgroundColor(const NSColor& color)
{
    hasBackground_ = color.alphaComponent() > 0;
    widget_->setAttribute(Qt::WA_NoSystemBackground, !hasBackground_);
}

void NSPanel::makeWidget()
{
    widget_.reset(new QWidget);
    widget_->setWindowTitle(QStringLiteral("Vantry"));
    widget_->setAttribute(Qt::WA_NoSystemBackground, !hasBackground_);
}

void NSPanel::remakeAll()
{
    const std::vector<NSPanel*> all = windows();
    for (NSPanel* window : all)
        window->remake();
}

void NSPanel::redrawAll()
{
    for (const NSPanel* window : windows()) {
        if (window->contentView_)
            window->contentView_->redraw();
    }
}

void NSPanel::remake()
{
    if (std::exchange(adopted_, false)) {
        surfaces().orderOut(*widget_);
        surfaces().release(*widget_);
    }
    const auto old = std::move(widget_);
    makeWidget();
    if (contentView_) {
        contentView_->widget()->setParent(widget_.get());
        contentView_->rescale();
        contentView_->widget()->show();
    }
    if (visible_)
        putUp();
}

void NSPanel::orderFrontRegardless()
{
    if (visible_ && adopted_)
        surfaces().orderFront(*widget_);
    else
        putUp();
}

void NSPanel::putUp()
{
    if (!adopted_)
        surfaces().adopt(*widget_, style_, frame_);
    adopted_ = true;
    // What is seen first, and gives a popup its shape, is how the views are now.
    visible_ = true;
    if (contentView_)
        contentView_->displayIfNeeded();
    surfaces().orderFront(*widget_);
}

void NSPanel::orderOut()
{
    visible_ = false;
    if (adopted_)
        surfaces().orderOut(*widget_);
}

bool NSPanel::makeKey()
{
    if (!canBecomeKey() || !visible_ || !NSApplication::isActive())
        return false;
    surfaces().takeKeyboard(*widget_);
    return true;
}

void NSPanel::makeFirstResponder(std::nullptr_t)
{
    if (QWidget* focused = widget_->focusWidget())
        focused->clearFocus();
}

CGRect NSPanel::convertToScreen(const CGRect& rect) const
{
    return { frame_.x + rect.x, frame_.y + rect.y, rect.width, rect.height };
}
