#pragma once

#include "forms/Form.h"

class SettingsStore;

// The pages of the settings window: what each holds as of now. They have no state; each part of a page that depends on
// a setting is decided whenever the page is described.

struct AppearancePane {
    SettingsStore& store;
    forms::Form body() const;
};

struct ButtonsPane {
    SettingsStore& store;
    forms::Form body() const;
};

struct WindowsPane {
    SettingsStore& store;
    forms::Form body() const;
};

struct DockPane {
    SettingsStore& store;
    forms::Form body() const;
};

struct ShortcutsPane {
    SettingsStore& store;
    forms::Form body() const;
};

struct GeneralPane {
    SettingsStore& store;
    forms::Form body() const;
};
