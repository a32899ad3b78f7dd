#include "bar/BarView.h"

#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "controls/Trash.h"
#include "log/Log.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"
#include "system/WindowIndex.h"

#include <sstream>
#include <utility>

namespace {

/// How long, in seconds, the pointer stays on something before it is told what that is.
constexpr double tooltipDelay = 0.45;

std::string text(CGPoint point)
{
    std::ostringstream text;
    text << '(' << point.x << ", " << point.y << ')';
    return text.str();
}

std::string text(const CGRect& rect)
{
    std::ostringstream text;
    text << '(' << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ')';
    return text.str();
}

/// The windows that a button previews: those of its application, unless it stands for a single one.
std::vector<WindowEntry> previewedWindows(const BarItem& item)
{
    if (!Settings::showWindowPreviews() || !item.pid || item.windowID)
        return {};
    const auto windows = WindowIndex::byPID();
    const auto own = windows->find(*item.pid);
    return own == windows->end() ? std::vector<WindowEntry>() : own->second;
}

}

void BarView::updateTrackingAreas()
{
    removeTrackingAreas();
    constexpr unsigned options = NSTrackingArea::mouseEnteredAndExited | NSTrackingArea::mouseMoved
        | NSTrackingArea::cursorUpdate | NSTrackingArea::activeAlways | NSTrackingArea::inVisibleRect;
    addTrackingArea({ options });
}

void BarView::mouseMoved(const NSEvent& event)
{
    updateHover(convertFromWindow(event.locationInWindow));
}

void BarView::mouseExited(const NSEvent&)
{
    pointerLeftBar(NSEvent::mouseLocation());
}

void BarView::resetCursorRects()
{
    addCursorRect(bounds(), NSCursor::arrow());
    addCursorRect(searchFieldRect(), NSCursor::iBeam());
}

void BarView::cursorUpdate(const NSEvent& event)
{
    setCursor(convertFromWindow(event.locationInWindow));
}

void BarView::setCursor(CGPoint point) const
{
    (CGRectContainsPoint(searchFieldRect(), point) ? NSCursor::iBeam() : NSCursor::arrow()).set();
}

void BarView::applyCursor(CGPoint forScreenPoint, const CGRect& windowFrame)
{
    const CGPoint point { forScreenPoint.x - windowFrame.x, forScreenPoint.y - windowFrame.y };
    setCursor(point);
    updateHover(point);
}

void BarView::updateHover(CGPoint point)
{
    setHoveredIndex(layout().hit(point));
}

void BarView::pointerLeftBar(CGPoint at)
{
    if (preview_->isShowing()) {
        const CGRect zone = preview_->hitZone();
        if (CGRectContainsPoint(zone, at)) {
            preview_->pointerMoved(at);
            return;
        }
        Log::debug("preview: dismissed, ", text(at), " outside ", text(zone));
    }
    mouseLeftBar();
}

void BarView::mouseLeftBar()
{
    setHoveredIndex(std::nullopt);
}

void BarView::setHoveredIndex(std::optional<int> index)
{
    if (index == hoveredIndex_)
        return;
    hoveredIndex_ = index;
    setNeedsDisplay();
    cancelTooltip();
    if (hoveredIndex_ && Settings::showTooltips())
        scheduleTooltip();
}

void BarView::scheduleTooltip()
{
    // The timer doesn't outlive the view.
    tooltipTimer_ = NSTimer::scheduledTimer(tooltipDelay, false, [this] { showTooltip(); });
}

void BarView::cancelTooltip()
{
    if (tooltipTimer_)
        std::exchange(tooltipTimer_, nullptr)->invalidate();
    tooltip_->hide();
    preview_->hide();
}

void BarView::showTooltip()
{
    if (!hoveredIndex_ || !window())
        return;
    const auto placed = layoutItems();
    const auto position = static_cast<std::size_t>(*hoveredIndex_);
    const bool isButton = *hoveredIndex_ >= 0;
    if (isButton && position >= placed.size())
        return;
    if (!isButton) {
        showComponentTooltip();
        return;
    }
    const LayoutItem& button = placed[position];
    const CGRect anchor = window()->convertToScreen(convertToWindow(button.rect));
    auto windows = previewedWindows(button.item);
    if (windows.empty())
        tooltip_->show(button.item.name, anchor);
    else
        preview_->show(std::move(windows), button.item.name, anchor);
}

void BarView::showComponentTooltip()
{
    const auto show = [this](const std::string& text, BarComponent component) {
        tooltip_->show(text, window()->convertToScreen(convertToWindow(rect(component))));
    };
    switch (*hoveredIndex_) {
    case BarHit::launcher:
        if (const auto launcher = launcherItem())
            show(launcher->name, BarComponent::launcher);
        return;
    case BarHit::showDesktop:
        show(ShowDesktop::isShowingDesktop() ? "Bring windows back (⌥⌘D)" : "Show desktop files and folders (⌥⌘D)",
            BarComponent::showDesktop);
        return;
    case BarHit::finder:
        show("Finder", BarComponent::finder);
        return;
    case BarHit::trash:
        show(Trash::isEmpty() ? "Trash (empty)" : "Trash", BarComponent::trash);
        return;
    default:
        return;
    }
}
