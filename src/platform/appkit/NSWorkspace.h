#pragma once

#include "appkit/NSImage.h"
#include "appkit/NSRunningApplication.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSURL.h"

#include <optional>
#include <string>
#include <vector>

struct NSWorkspaceOpenConfiguration {
    bool activates = false;
    /// Another one, even where it runs.
    bool createsNewApplicationInstance = false;
};

/// The user's desktop: what runs, what is in front, what opens what. Main thread.
class NSWorkspace {
public:
    static NSWorkspace& sharedWorkspace();

    std::vector<NSRunningApplication> runningApplications() const;
    std::optional<NSRunningApplication> frontmostApplication() const;
    /// The icon of a file; empty only where the desktop has no icon at all.
    NSImage iconForFile(const std::string& path) const;
    /// Launches the application or has the one that runs reopen. False when that can't be asked for.
    bool openApplicationAtURL(const NSURL& url, NSWorkspaceOpenConfiguration configuration) const;
    bool openURL(const NSURL& url) const;
    /// Shows each in the folder that it lies in, selected.
    void activateFileViewerSelectingURLs(const std::vector<NSURL>& urls) const;

    NSNotificationCenter& notificationCenter() { return center_; }

    /// Has the desktop in force post its changes here. For the application object, and for tests that set a desktop.
    void followDesktop();

private:
    NSNotificationCenter center_;
};

/// Under this key of a workspace notification's user info stands the `NSRunningApplication` it is about.
extern const char* const NSWorkspaceApplicationKey;

extern const char* const NSWorkspaceActiveSpaceDidChangeNotification;
extern const char* const NSWorkspaceDidActivateApplicationNotification;
extern const char* const NSWorkspaceDidLaunchApplicationNotification;
extern const char* const NSWorkspaceDidTerminateApplicationNotification;
extern const char* const NSWorkspaceDidHideApplicationNotification;
extern const char* const NSWorkspaceDidUnhideApplicationNotification;
