#pragma once

#include "appkit/NSEvent.h"
#include "appkit/NSVisualEffectView.h"
#include "bar/BarView.h"
#include "bar/BarWindow.h"
#include "bar/RefreshSoon.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSTimer.h"
#include "system/Displays.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// The bar of one display: its window, what is in it, and everything that makes it refresh by itself. Main thread.
class BarController final : public std::enable_shared_from_this<BarController> {
public:
    /// Makes the window and orders it in.
    explicit BarController(DisplayInfo display);
    ~BarController() { tearDown(); }
    BarController(const BarController&) = delete;
    BarController& operator=(const BarController&) = delete;

    /// Fills the bar, and keeps it current until `tearDown`.
    void start();
    /// Stops what `start` began and hides the bar.
    void tearDown();

    /// Takes over the display's present record: moves at once, and refreshes soon.
    void update(DisplayInfo display);
    /// Brings the buttons up to date and the bar to the front, or hides it while bars aren't to be seen. Never moves
    /// the window.
    void refresh();
    /// Puts the window where the settings and the display's screen want it.
    void reposition();

    const std::vector<BarItem>& currentItems() const { return view_->items(); }
    const BarWindow& window() const { return *window_; }
    const std::shared_ptr<BarView>& view() const { return view_; }

    struct ContentStack {
        std::shared_ptr<NSView> container;
        std::shared_ptr<BarView> view;
    };
    /// A bar's view over its backdrop.
    static ContentStack makeContentStack(CGSize size, const std::shared_ptr<NSVisualEffectView>& vibrancy);

private:
    /// A call that does nothing once the controller is gone.
    std::function<void()> weakly(void (BarController::*react)());
    void observe(NSNotificationCenter& center, const char* name, void (BarController::*react)());
    void hide();
    void workspaceChanged();
    void settingsChanged();
    void pointerMoved();

    std::shared_ptr<BarWindow> window_;
    std::shared_ptr<BarView> view_;
    std::shared_ptr<NSVisualEffectView> vibrancy_;
    /// All that makes the bar refresh asks here.
    RefreshSoon soon_ { [this] { refresh(); } };
    std::shared_ptr<NSTimer> timer_;
    NSEvent::Monitor cursorMonitor_;
    /// Each with the centre that it was added to.
    std::vector<std::pair<NSNotificationCenter*, NSNotificationCenter::Token>> observers_;
    DisplayInfo display_;
};
