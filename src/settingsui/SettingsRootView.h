#pragma once

#include "forms/Form.h"
#include "settingsui/SettingsPane.h"
#include "settingsui/SettingsStore.h"

/// The whole of the settings window: the sidebar, and the page that is selected in it.
class SettingsRootView {
public:
    forms::NavigationSplitView body();

    SettingsStore& store() { return store_; }

private:
    SettingsStore& store_ = SettingsStore::shared();
    SettingsPane selection_ = SettingsPane::appearance;
};
