#pragma once

#include "appkit/NSWindow.h"
#include "settingsui/SettingsRootView.h"

#include <optional>

/// The program's settings window. Main thread.
class SettingsWindowController final : private NSWindowDelegate {
public:
    /// The one of the process, made at its first use.
    static SettingsWindowController& shared();

    /// Brings the window to the front, the same one however often it was closed.
    void show();

    const NSWindow* window() const { return window_ ? &*window_ : nullptr; }
    forms::NavigationSplitView content() { return root_->body(); }

private:
    void windowWillClose() override;

    std::optional<SettingsRootView> root_;
    std::optional<NSWindow> window_;
};
