#include "settingsui/SettingsWindowController.h"

#include "appkit/NSApplication.h"
#include "base/PerDesktop.h"
#include "hosting/NSHostingController.h"

SettingsWindowController& SettingsWindowController::shared()
{
    return perDesktop<SettingsWindowController>();
}

void SettingsWindowController::show()
{
    if (!window_) {
        root_.emplace();
        window_.emplace(std::make_shared<NSHostingController>([this] { return root_->body(); }, root_->store()));
        window_->setTitle("Vantry Settings");
        window_->setContentSize({ 880, 620 });
        window_->setMinSize({ 780, 540 });
        window_->setFrameAutosaveName("VantrySettingsWindow");
        window_->setDelegate(this);
        window_->center();
    }
    NSApplication::activate();
    window_->makeKeyAndOrderFront();
}

void SettingsWindowController::windowWillClose()
{
    NSApplication::deactivate();
}
