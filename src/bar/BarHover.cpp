#include "bar/BarHover.h"

#include "capture/SCScreenshotManager.h"
#include "controls/Trash.h"
#include "log/Log.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"
#include "system/WindowIndex.h"

#include <initializer_list>
#include <iterator>
#include <sstream>
#include <utility>

namespace {

/// How long, in seconds, the pointer stays on something before it is told what that is.
constexpr double panelDelay = 0.45;
/// How long, in seconds, a pointer of which nothing is known may take from the button over the gap to the preview.
constexpr double crossingTime = 0.3;

void stop(std::shared_ptr<NSTimer>& timer)
{
    if (timer)
        std::exchange(timer, nullptr)->invalidate();
}

std::string listed(std::initializer_list<double> numbers)
{
    std::ostringstream text;
    for (const double number : numbers)
        text << (text.tellp() > 0 ? ", " : "(") << number;
    return text.str() + ')';
}

/// The windows that a button previews: those of its application, unless it stands for a single one.
std::vector<WindowEntry> previewedWindows(const BarItem& item)
{
    if (!Settings::showWindowPreviews() || !SCScreenshotManager::isSupported() || !item.pid || item.windowID)
        return {};
    const auto windows = WindowIndex::byPID();
    const auto own = windows->find(*item.pid);
    return own == windows->end() ? std::vector<WindowEntry>() : own->second;
}

/// Of what is no application button; empty where there is nothing to tell.
std::string tooltipText(int hit, const BarPicture& picture)
{
    switch (hit) {
    case BarHit::launcher:
        return picture.launcher ? picture.launcher->name : "";
    case BarHit::showDesktop:
        return ShowDesktop::isShowingDesktop() ? "Bring windows back (⌥⌘D)" : "Show desktop files and folders (⌥⌘D)";
    case BarHit::finder:
        return "Finder";
    case BarHit::trash:
        return Trash::isEmpty() ? "Trash (empty)" : "Trash";
    default:
        return "";
    }
}

}

BarHover::BarHover(const NSView& bar, const BarPicture& picture, std::function<void()> onChange)
    : bar_(bar)
    , picture_(picture)
    , onChange_(std::move(onChange))
{
    preview_.content()->onExit = [this] { pointerLeft(NSEvent::mouseLocation()); };
}

BarHover::~BarHover()
{
    preview_.content()->onExit = nullptr;
    cancelPanels();
}

void BarHover::setHit(std::optional<int> hit)
{
    stop(leavingTimer_);
    if (hit == hit_)
        return;
    hit_ = hit;
    onChange_();
    cancelPanels();
    if (hit_ && Settings::showTooltips())
        panelTimer_ = NSTimer::scheduledTimer(panelDelay, false, [this] { showPanel(); });
}

void BarHover::pointerLeft(std::optional<CGPoint> at)
{
    if (preview_.isShowing() && !at) {
        stop(leavingTimer_);
        leavingTimer_ = NSTimer::scheduledTimer(crossingTime, false, [this] {
            if (!preview_.content()->holdsPointer())
                setHit(std::nullopt);
        });
        return;
    }
    if (preview_.isShowing() && isWithPreview(*at))
        preview_.pointerMoved(*at);
    else
        setHit(std::nullopt);
}

bool BarHover::isWithPreview(CGPoint pointer) const
{
    const CGRect zone = preview_.hitZone();
    const bool isInside = CGRectContainsPoint(zone, pointer);
    if (!isInside)
        Log::debug("preview: dismissed, ", listed({ pointer.x, pointer.y }), " outside ",
            listed({ zone.x, zone.y, zone.width, zone.height }));
    return isInside;
}

void BarHover::cancelPanels()
{
    stop(panelTimer_);
    stop(leavingTimer_);
    tooltip_.hide();
    preview_.hide();
}

void BarHover::showPanel()
{
    if (!hit_ || *hit_ >= std::ssize(picture_.buttons) || !bar_.window())
        return;
    const BarItem* button = *hit_ >= 0 ? &picture_.buttons[static_cast<std::size_t>(*hit_)] : nullptr;
    const CGRect anchor = bar_.window()->convertToScreen(bar_.convertToWindow(picture_.layout.hitRect(*hit_)));
    const std::string text = button ? button->name : tooltipText(*hit_, picture_);
    auto windows = button ? previewedWindows(*button) : std::vector<WindowEntry>();
    if (!windows.empty())
        preview_.show(std::move(windows), text, anchor);
    else if (button || !text.empty())
        tooltip_.show(text, anchor);
}
