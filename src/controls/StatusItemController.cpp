#include "controls/StatusItemController.h"

#include "appkit/NSAlert.h"
#include "appkit/NSApplication.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSStatusItem.h"
#include "log/Log.h"
#include "settings/Settings.h"

#include <string>

namespace {

/// Whole numbers, as for points.
std::string place(const NSStatusItem& item)
{
    const auto frame = item.buttonFrame();
    if (!frame)
        return "unplaced";
    return std::to_string(static_cast<int>(frame->x)) + "," + std::to_string(static_cast<int>(frame->y));
}

}

StatusItemController::StatusItemController(std::function<void()> onToggleBar)
    : onToggleBar_(std::move(onToggleBar))
{
    refresh();
    observer_ = NSNotificationCenter::defaultCenter().addObserver(
        Settings::didChange, [this](const NSNotification&) { refresh(); });
}

StatusItemController::~StatusItemController()
{
    NSNotificationCenter::defaultCenter().removeObserver(observer_);
}

void StatusItemController::refresh()
{
    if (!Settings::showMenuBarIcon())
        hide();
    else if (statusItem_)
        statusItem_->setMenu(buildMenu());
    else
        show();
}

void StatusItemController::show()
{
    statusItem_ = NSStatusBar::systemStatusBar().statusItem(NSVariableStatusItemLength);
    statusItem_->setImage(NSImage::imageWithSystemSymbolName("rectangle.bottomthird.inset.filled", "Vantry"));
    statusItem_->setAutosaveName("VantryStatusItem");
    statusItem_->setMenu(buildMenu());
    Log::debug("status item shown at ", place(*statusItem_));
}

void StatusItemController::hide()
{
    if (!statusItem_)
        return;
    NSStatusBar::systemStatusBar().removeStatusItem(statusItem_);
    statusItem_ = nullptr;
    Log::debug("status item hidden");
}

std::shared_ptr<NSMenu> StatusItemController::buildMenu()
{
    auto menu = std::make_shared<NSMenu>();
    const auto toggle = [weak = std::weak_ptr(self_)](const NSMenuItem&) {
        if (const auto self = weak.lock())
            (*self)->toggleBar();
    };
    menu->addItem(Settings::barVisible() ? "Hide Taskbar" : "Show Taskbar", toggle, "b")
        .setKeyEquivalentModifierMask(NSEventModifierFlagOption | NSEventModifierFlagCommand);
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem("Hide this menu bar icon", [](const NSMenuItem&) { hideIcon(); })
        .setToolTip("You can still show the taskbar with ⌥⌘B");
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem(
        "Quit Vantry", [](const NSMenuItem&) { NSApplication::sharedApplication().terminate(); }, "q");
    return menu;
}

void StatusItemController::toggleBar()
{
    onToggleBar_();
    if (statusItem_)
        statusItem_->setMenu(buildMenu());
}

void StatusItemController::hideIcon()
{
    const NSAlert alert {
        "Hide the menu bar icon?",
        "The taskbar can still be shown or hidden with ⌥⌘B, and the icon can be turned back on in Settings — "
        "right-click the taskbar to open them.",
        { "Hide Icon", "Cancel" },
    };
    alert.begin([](int response) {
        if (response == NSAlertFirstButtonReturn)
            Settings::showMenuBarIcon.set(false);
    });
}
