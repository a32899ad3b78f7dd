#include "bar/PreviewPanel.h"

#include "bar/PanelPlace.h"
#include "log/Log.h"
#include "system/WindowRaise.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr CGSize initialSize { 200, 140 };
constexpr double gap = 8;
constexpr double margin = 6;
constexpr CGPoint nowhere { -1, -1 };

}

PreviewPanel::PreviewPanel()
    : FloatingPanel(initialSize, kCGPopUpMenuWindowLevelKey)
    , content_(std::make_shared<PreviewView>(CGRect {}))
{
    setContentView(content_);
    content_->onPick = [this](const WindowEntry& window) { pick(window); };
}

PreviewPanel::~PreviewPanel()
{
    content_->onPick = nullptr;
}

void PreviewPanel::show(std::vector<WindowEntry> windows, const std::string& appName, const CGRect& anchor)
{
    if (windows.empty()) {
        hide();
        return;
    }
    anchorRect_ = anchor;
    const std::size_t room = PreviewView::capacity(PanelPlace::room(anchor, margin));
    windows.erase(windows.begin() + static_cast<std::ptrdiff_t>(std::min(room, windows.size())), windows.end());
    content_->setWindows(std::move(windows), appName);
    resizeToFit();
    orderFrontRegardless();
}

void PreviewPanel::resizeToFit()
{
    setFrame(PanelPlace::beside(anchorRect_, content_->fittingSize(), gap, margin), true);
}

void PreviewPanel::hide()
{
    content_->hover(nowhere);
    orderOut();
}

void PreviewPanel::pointerMoved(CGPoint toScreenPoint)
{
    // A pixel is told by the corner that has the smallest coordinates: in the view, where y goes down, the upper one.
    const CGPoint point = convertPointFromScreen(toScreenPoint);
    content_->hover(content_->convertFromWindow(CGPoint { point.x, point.y + 1 }));
}

void PreviewPanel::pick(const WindowEntry& window)
{
    Log::debug("preview: picked window ", window.id, " (", window.title, ") of pid ", static_cast<int>(window.pid));
    WindowIndex::raise(window.id, window.pid);
    hide();
}
