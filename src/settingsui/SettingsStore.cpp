#include "settingsui/SettingsStore.h"

#include "appkit/NSAlert.h"
#include "appkit/NSScreen.h"
#include "base/PerDesktop.h"
#include "dock/DockBackup.h"
#include "dock/DockPrefs.h"
#include "foundation/NSUserDefaults.h"
#include "look/Appearance.h"
#include "look/HexColor.h"
#include "look/Metrics.h"
#include "system/WindowIndex.h"

#include <algorithm>
#include <iterator>
#include <utility>

SettingsStore& SettingsStore::shared()
{
    return perDesktop<SettingsStore>();
}

SettingsStore::SettingsStore()
{
    for (const char* name : { Settings::didChange, NSApplicationDidChangeScreenParametersNotification,
             NSSystemColorsDidChangeNotification })
        observers_.push_back(
            NSNotificationCenter::defaultCenter().addObserver(name, [this](const NSNotification&) { willChange(); }));
}

SettingsStore::~SettingsStore()
{
    for (const auto& observer : observers_)
        NSNotificationCenter::defaultCenter().removeObserver(observer);
}

void SettingsStore::change(const std::function<void()>& write)
{
    willChange();
    write();
    tellUnsaved();
}

/// Once; what was chosen is in force nevertheless, and is saved with what can be saved next.
void SettingsStore::tellUnsaved()
{
    if (hasToldUnsaved_ || NSUserDefaults::standard().synchronize())
        return;
    hasToldUnsaved_ = true;
    NSAlert {
        "Your settings can't be saved",
        "What you choose is in force until Vantry quits. Make sure that there is room in the folder of your settings "
        "and "
        "that you may write there.",
        { "OK" }
    }.begin([](int) {});
}

Binding<NSColor> SettingsStore::barTint()
{
    return { Appearance::tint,
        [this](NSColor color) { change([&] { Settings::barTintHex.set(HexColor::hexString(color)); }); } };
}

Binding<bool> SettingsStore::usesSystemAccent()
{
    return { [] { return Settings::accentHex().empty(); },
        [this](bool uses) {
            change([&] {
                Settings::accentHex.set(uses ? std::string() : HexColor::hexString(NSColor::controlAccentColor()));
            });
        } };
}

Binding<NSColor> SettingsStore::accentColour()
{
    return { Appearance::accent,
        [this](NSColor color) { change([&] { Settings::accentHex.set(HexColor::hexString(color)); }); } };
}

Binding<bool> SettingsStore::manageDock()
{
    return { [] { return Settings::manageDock(); },
        [this](bool manages) {
            change([&] { Settings::manageDock.set(manages); });
            if (manages)
                DockPrefs::keepDockBehindBar(Metrics::current().barHeight());
        } };
}

std::size_t SettingsStore::screenCount() const
{
    return NSScreen::screens().size();
}

bool SettingsStore::windowSearchAvailable() const
{
    return WindowIndex::titlesAvailable();
}

bool SettingsStore::dockMigrated() const
{
    return Settings::dockMigrated();
}

bool SettingsStore::hasDockBackup() const
{
    return DockPrefs::hasBackup();
}

bool SettingsStore::isVisible(BarComponent component) const
{
    return Settings::isVisible(component);
}

void SettingsStore::setVisible(BarComponent component, bool visible)
{
    change([&] { Settings::setVisible(component, visible); });
}

void SettingsStore::move(BarComponent component, int offset)
{
    auto order = Settings::componentOrder();
    const auto place = std::find(order.begin(), order.end(), component);
    const auto target = place - order.begin() + offset;
    if (place == order.end() || target < 0 || target >= std::ssize(order))
        return;
    std::iter_swap(place, order.begin() + target);
    change([&] { Settings::componentOrder.set(order); });
}
