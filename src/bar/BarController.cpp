#include "bar/BarController.h"

#include "appkit/NSWorkspace.h"
#include "bar/BarLevel.h"
#include "look/Metrics.h"
#include "model/Entries.h"
#include "settings/Settings.h"
#include "system/WindowIndex.h"

#include <utility>

namespace {

constexpr double refreshInterval = 1.5;
constexpr unsigned fillsItsSuperview = NSViewWidthSizable | NSViewHeightSizable;

/// A bar spans its screen: along the very bottom, or directly under the menu bar.
CGRect barFrame(const NSScreen& screen)
{
    const CGRect& frame = screen.frame();
    const double height = Metrics::current().barHeight();
    const double y = isTop(Settings::barEdge()) ? screen.visibleFrame().maxY() - height : frame.minY();
    return { frame.minX(), y, frame.width, height };
}

NSPanelRole barRole()
{
    return isTop(Settings::barEdge()) ? NSPanelRole::topBar : NSPanelRole::bottomBar;
}

std::shared_ptr<BarWindow> makeWindow(const CGRect& frame)
{
    auto window = std::make_shared<BarWindow>(frame);
    window->setOpaque(false);
    window->setBackgroundColor(NSColor::clear());
    window->setLevel(BarLevel::resolve());
    window->setRole(barRole());
    return window;
}

}

BarController::BarController(DisplayInfo display)
    : vibrancy_(std::make_shared<NSVisualEffectView>(CGRect {}))
    , display_(std::move(display))
{
    const CGRect frame = barFrame(display_.screen);
    window_ = makeWindow(frame);
    auto [container, view] = makeContentStack(frame.size(), vibrancy_);
    window_->setContentView(container);
    view_ = view;
    window_->orderFrontRegardless();
}

BarController::ContentStack BarController::makeContentStack(
    CGSize size, const std::shared_ptr<NSVisualEffectView>& vibrancy)
{
    const CGRect bounds { 0, 0, size.width, size.height };
    auto container = std::make_shared<NSView>(bounds);
    container->setAutoresizingMask(fillsItsSuperview);

    vibrancy->setFrame(bounds);
    vibrancy->setHidden(Settings::barStyle() != BarStyle::translucent);
    vibrancy->setAutoresizingMask(fillsItsSuperview);
    container->addSubview(vibrancy);

    auto view = std::make_shared<BarView>(bounds);
    view->setAutoresizingMask(fillsItsSuperview);
    container->addSubview(view);
    return { container, view };
}

void BarController::start()
{
    refresh();

    NSNotificationCenter& workspace = NSWorkspace::sharedWorkspace().notificationCenter();
    for (const char* name :
        { NSWorkspaceActiveSpaceDidChangeNotification, NSWorkspaceDidActivateApplicationNotification,
            NSWorkspaceDidLaunchApplicationNotification, NSWorkspaceDidTerminateApplicationNotification,
            NSWorkspaceDidHideApplicationNotification, NSWorkspaceDidUnhideApplicationNotification })
        observe(workspace, name, &BarController::workspaceChanged);

    timer_ = NSTimer::scheduledTimer(refreshInterval, true, weakly(&BarController::refresh));
    observe(NSNotificationCenter::defaultCenter(), Settings::didChange, &BarController::settingsChanged);
    observe(
        NSNotificationCenter::defaultCenter(), NSSystemColorsDidChangeNotification, &BarController::settingsChanged);
    cursorMonitor_ = NSEvent::addGlobalMonitor(
        NSEvent::maskMouseMoved | NSEvent::maskLeftMouseDragged, weakly(&BarController::pointerMoved));
}

std::function<void()> BarController::weakly(void (BarController::*react)())
{
    return [weak = weak_from_this(), react] {
        if (const auto self = weak.lock())
            (self.get()->*react)();
    };
}

void BarController::observe(NSNotificationCenter& center, const char* name, void (BarController::*react)())
{
    auto token = center.addObserver(name, [call = weakly(react)](const NSNotification&) { call(); });
    observers_.emplace_back(&center, std::move(token));
}

void BarController::tearDown()
{
    soon_.cancel();
    if (timer_)
        std::exchange(timer_, nullptr)->invalidate();
    if (cursorMonitor_)
        NSEvent::removeMonitor(std::exchange(cursorMonitor_, nullptr));
    for (const auto& [center, token] : std::exchange(observers_, {}))
        center->removeObserver(token);
    hide();
}

void BarController::hide()
{
    view_->closePanels();
    window_->orderOut();
}

void BarController::update(DisplayInfo display)
{
    display_ = std::move(display);
    settingsChanged();
}

void BarController::refresh()
{
    soon_.cancel();
    if (!Settings::barVisible()) {
        hide();
        return;
    }
    view_->setItems(DockModel::entries(view_->buttonCapacity(), display_));
    window_->orderFrontRegardless();
}

void BarController::reposition()
{
    vibrancy_->setHidden(Settings::barStyle() != BarStyle::translucent);
    const auto screen = Displays::screenFor(display_.displayID);
    if (!screen)
        return;
    const CGRect frame = barFrame(*screen);
    if (frame != window_->frame())
        view_->letGoOfPointer();
    window_->setRole(barRole());
    window_->setFrame(frame, true);
    view_->relayout();
}

void BarController::workspaceChanged()
{
    WindowIndex::invalidate();
    soon_.ask();
}

void BarController::settingsChanged()
{
    reposition();
    soon_.ask();
}

void BarController::pointerMoved()
{
    const auto point = NSEvent::mouseLocation();
    const CGRect& frame = window_->frame();
    if (point && window_->isVisible() && CGRectContainsPoint(frame, *point))
        view_->applyCursor(*point, frame);
    else
        view_->pointerLeftBar(point);
}
