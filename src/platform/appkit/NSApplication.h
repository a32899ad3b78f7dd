#pragma once

#include "appkit/NSRunningApplication.h"

#include <memory>

class NSApplicationDelegate {
public:
    virtual ~NSApplicationDelegate() = default;
    virtual void applicationDidFinishLaunching() = 0;
    virtual void applicationWillTerminate() = 0;
};

/// The program's run. Main thread.
class NSApplication {
public:
    /// The one application. Its first use opens the desktop; where that can't be done, the reason is written to
    /// standard error and the process ends with status 2 (a fault in what the user gave) or 1.
    static NSApplication& sharedApplication();

    /// An accessory has panels and a status item; one that is prohibited shows nothing.
    void setActivationPolicy(NSApplicationActivationPolicy policy) { policy_ = policy; }
    void setDelegate(NSApplicationDelegate* delegate) { delegate_ = delegate; }
    /// Tells the delegate that launching has finished, then delivers events until `terminate`, which the desktop's end
    /// and signals that ask the process to end amount to.
    void run();
    /// Tells the delegate, then ends `run`.
    void terminate();

    // Whether windows of the program may take the keyboard from the application that the user works in. They are
    // panels, so nothing else comes of it.

    static bool isActive();
    static void activate();
    /// Gives the keyboard back to the application that had it, unless it has gone elsewhere since.
    static void deactivate();

private:
    NSApplication();

    NSApplicationDelegate* delegate_ = nullptr;
    NSApplicationActivationPolicy policy_ = NSApplicationActivationPolicyRegular;
    bool terminated_ = false;
};
