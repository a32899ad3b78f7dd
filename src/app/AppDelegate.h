#pragma once

#include "appkit/NSApplication.h"
#include "bar/BarManager.h"

#include <memory>

/// Starts the subsystems in their order, or the one diagnostic run that the environment asks for, or leaves the desktop
/// to another instance that runs already.
class AppDelegate final : public NSApplicationDelegate {
public:
    explicit AppDelegate(NSApplication& application)
        : application_(application)
    {
    }

    void applicationDidFinishLaunching() override;
    void applicationWillTerminate() override { }

    /// Null in a diagnostic run and in a second instance.
    const std::shared_ptr<BarManager>& manager() const { return manager_; }

private:
    void start();

    NSApplication& application_;
    std::shared_ptr<BarManager> manager_;
};
