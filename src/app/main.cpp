#include "app/AppDelegate.h"
#include "appkit/NSApplication.h"

int main()
{
    NSApplication& application = NSApplication::sharedApplication();
    application.setActivationPolicy(NSApplicationActivationPolicyAccessory);
    AppDelegate delegate(application);
    application.setDelegate(&delegate);
    application.run();
    return 0;
}
