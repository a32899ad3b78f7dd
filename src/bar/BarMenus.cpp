#include "bar/BarMenus.h"

#include "appkit/NSApplication.h"
#include "controls/BarVisibility.h"
#include "log/Log.h"
#include "model/ItemCommands.h"
#include "model/Pinning.h"
#include "search/AppCatalog.h"
#include "settings/Settings.h"
#include "settingsui/SettingsWindowController.h"
#include "system/ShowDesktop.h"

#include <any>
#include <optional>

namespace {

/// What an entry is about, as its represented object.
struct ItemRef {
    BarItem item;
};
struct WindowRef {
    AXUIElement element;
    pid_t pid;
};

// The item menu

NSMenuItem action(std::string title, void (*perform)(const BarItem&), const BarItem& item)
{
    NSMenuItem entry(std::move(title),
        [perform](const NSMenuItem& sender) {
            if (const auto* ref = std::any_cast<ItemRef>(&sender.representedObject()))
                perform(ref->item);
        },
        {});
    entry.setRepresentedObject(ItemRef { item });
    return entry;
}

void showWindow(const NSMenuItem& sender)
{
    if (const auto* window = std::any_cast<WindowRef>(&sender.representedObject()))
        DockModel::raise(window->element, window->pid);
}

void menuToggleHide(const BarItem& item)
{
    DockModel::setHidden(item, !DockModel::isHidden(item));
}

void menuTogglePin(const BarItem& item)
{
    if (item.isPinned)
        DockModel::unpin(item);
    else
        DockModel::pin(item);
}

void addWindows(NSMenu& menu, const BarItem& item)
{
    const auto windows = DockModel::windowList(item);
    if (windows.empty())
        return;
    auto submenu = std::make_shared<NSMenu>();
    for (const auto& [title, element] : windows)
        submenu->addItem(title, showWindow).setRepresentedObject(WindowRef { element, item.pid.value_or(0) });
    menu.addItem("Show window").setSubmenu(std::move(submenu));
}

// The bar menu

void flip(const Settings::Setting<bool>& setting)
{
    setting.set(!setting());
}

void addTick(NSMenu& menu, const char* title, const Settings::Setting<bool>& setting)
{
    menu.addItem(title, [&setting](const NSMenuItem&) { flip(setting); }).setState(setting());
}

void toggleShowDesktop(const NSMenuItem&)
{
    ShowDesktop::forgetIfStale();
    ShowDesktop::toggle();
}

void hideBar(const NSMenuItem&)
{
    BarVisibility::toggle();
}

void openSettings(const NSMenuItem&)
{
    SettingsWindowController::shared().show();
}

void quit(const NSMenuItem&)
{
    NSApplication::sharedApplication().terminate();
}

// The launcher's menu

void launchFromMenu(const NSMenuItem& sender)
{
    if (const auto* url = std::any_cast<NSURL>(&sender.representedObject()))
        AppCatalog::open(*url);
}

}

namespace BarMenus {

std::shared_ptr<NSMenu> itemMenu(const BarItem& item)
{
    auto menu = std::make_shared<NSMenu>();
    menu->addItem(item.name).setEnabled(false);
    menu->addItem(NSMenuItem::separatorItem());
    if (item.isRunning())
        addWindows(*menu, item);
    menu->addItem(action("New Window", DockModel::newWindow, item));
    if (item.isRunning())
        menu->addItem(action(DockModel::isHidden(item) ? "Show" : "Hide", menuToggleHide, item));
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem(action(item.isPinned ? "Unpin from Taskbar" : "Pin to Taskbar", menuTogglePin, item));
    if (!item.isRunning())
        return menu;
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem(action("Quit", DockModel::quit, item));
    menu->addItem(action("Force Quit", DockModel::forceQuit, item));
    return menu;
}

std::shared_ptr<NSMenu> barMenu()
{
    auto menu = std::make_shared<NSMenu>();
    addTick(*menu, "This desktop only", Settings::currentSpaceOnly);
    addTick(*menu, "Keep windows above bar", Settings::autoFitWindows);
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem(ShowDesktop::isShowingDesktop() ? "Restore Windows" : "Show Desktop", toggleShowDesktop);
    menu->addItem("Hide Taskbar", hideBar);
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem("Settings\u2026", openSettings, ",");
    menu->addItem("Quit Vantry", quit, "q");
    return menu;
}

std::shared_ptr<NSMenu> launcherMenu()
{
    return AppCatalog::buildMenu(launchFromMenu);
}

}
