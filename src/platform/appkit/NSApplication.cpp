#include "appkit/NSApplication.h"

#include "appkit/NSColor.h"
#include "appkit/NSPanel.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "appkit/NSWorkspace.h"
#include "appkit/ProgramIcon.h"
#include "appkit/RunLoopDriver.h"
#include "appkit/Signals.h"
#include "base/PerDesktop.h"
#include "base/RunLoop.h"
#include "foundation/NSFileHandle.h"
#include "host/Desktop.h"
#include "host/Displays.h"
#include "host/OpenDesktop.h"
#include "host/Session.h"
#include "host/Surfaces.h"

#include <QApplication>

namespace {

/// In seconds.
constexpr double iconDelay = 1;

struct Activity {
    bool isActive = false;
};

}

NSApplication::NSApplication()
{
    outliveBrokenPipes();
    if (!host::Desktop::hasCurrent())
        host::Desktop::setCurrent(&host::openDesktop());
    host::Desktop& desktop = host::Desktop::current();
    desktop.displays().onChange = [] {
        NSNotificationCenter::defaultCenter().post(NSApplicationDidChangeScreenParametersNotification);
        NSWindow::keepAllOnScreens();
    };
    // Not while whoever tells of it holds on to a panel's window.
    desktop.surfaces().onChange = [] {
        RunLoop::main().perform([] {
            NSPanel::remakeAll();
            NSWindow::remakeAll();
        });
    };
    desktop.session().onAccentColorChange = [] {
        NSNotificationCenter::defaultCenter().post(NSSystemColorsDidChangeNotification);
        NSPanel::redrawAll();
    };
    desktop.onLost = [this](const std::string& reason) {
        NSFileHandle::writeToStandardError("vantry: " + reason + "\n");
        terminate();
    };
    NSWorkspace::sharedWorkspace().followDesktop();
}

NSApplication& NSApplication::sharedApplication()
{
    static NSApplication application;
    return application;
}

void NSApplication::run()
{
    const RunLoopDriver driver;
    const TerminationSignals termination([this] { terminate(); });
    {
        const RunLoop::Turn turn;
        delegate_->applicationDidFinishLaunching();
    }
    host::Desktop& desktop = host::Desktop::current();
    if (policy_ != NSApplicationActivationPolicyProhibited && desktop.onShown)
        desktop.onShown();
    // Nobody looks for it at once, and it takes a while to draw.
    RunLoop::main().schedule(iconDelay, [] { QApplication::setWindowIcon(programIcon()); });
    if (!terminated_)
        QCoreApplication::exec();
    NSWindow::endAll();
}

void NSApplication::terminate()
{
    if (terminated_)
        return;
    terminated_ = true;
    delegate_->applicationWillTerminate();
    QCoreApplication::exit(0);
}

bool NSApplication::isActive()
{
    return perDesktop<Activity>().isActive;
}

void NSApplication::activate()
{
    perDesktop<Activity>().isActive = true;
}

void NSApplication::deactivate()
{
    perDesktop<Activity>().isActive = false;
    host::Desktop::current().surfaces().giveBackKeyboard();
}
