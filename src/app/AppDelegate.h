#pragma once

#include "appkit/NSApplication.h"
#include "bar/BarManager.h"
#include "controls/StatusItemController.h"

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
    /// Gives the system's settings back, unless the user doesn't want it or there is nothing to give.
    void applicationWillTerminate() override;

    /// Null in a diagnostic run and in a second instance.
    const std::shared_ptr<BarManager>& manager() const { return manager_; }
    /// Null likewise.
    const std::unique_ptr<StatusItemController>& statusItem() const { return statusItem_; }

private:
    void start();
    void takeTheDocksPlace();

    NSApplication& application_;
    std::shared_ptr<BarManager> manager_;
    std::unique_ptr<StatusItemController> statusItem_;
    /// This process leaves the system's settings alone at quit.
    bool isProbeRun_ = false;
};
