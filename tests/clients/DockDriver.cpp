// Does one thing to the Dock or to what is kept beside it, named by DOCK_ACT, on the X11 desktop, and ends: what the
// crash tests kill.

#include "app/AppDelegate.h"
#include "dock/DockPrefs.h"
#include "dock/LoginItem.h"
#include "foundation/NSProcessInfo.h"
#include "settings/Migration.h"

#include <cstdio>
#include <functional>
#include <map>
#include <string>

int main()
{
    const std::map<std::string, std::function<void()>> acts {
        { "recommended", DockPrefs::applyRecommended },
        { "move-apps", DockPrefs::migrateToTaskbar },
        { "restore", DockPrefs::restoreDock },
        { "migrate-settings", Settings::migrateLegacyState },
        { "login-item-on", [] { LoginItem::setEnabled(true); } },
        { "login-item-off", [] { LoginItem::setEnabled(false); } },
    };
    const std::string name = NSProcessInfo::environment("DOCK_ACT").value_or("");
    NSApplication& application = NSApplication::sharedApplication();
    if (name == "start" || name == "start-and-quit") {
        AppDelegate delegate(application);
        delegate.applicationDidFinishLaunching();
        if (name == "start-and-quit")
            delegate.applicationWillTerminate();
        return 0;
    }
    const auto act = acts.find(name);
    if (act == acts.end()) {
        std::fprintf(stderr, "dock_driver: no act \"%s\"\n", name.c_str());
        return 2;
    }
    act->second();
    return 0;
}
