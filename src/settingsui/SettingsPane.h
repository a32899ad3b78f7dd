#pragma once

#include "forms/Form.h"

#include <string>
#include <string_view>
#include <vector>

class SettingsStore;

/// The pages of the settings window, in the order of the sidebar.
enum class SettingsPane { appearance, buttons, windows, dock, shortcuts, general };

namespace SettingsPanes {

struct Facts {
    std::string_view id;
    std::string_view title;
    /// A system symbol.
    std::string_view icon;
    std::string_view group;
};

const Facts& facts(SettingsPane pane);
/// What the page holds as of now, in a line.
std::string summary(SettingsPane pane, const SettingsStore& store);
SettingsPane withId(std::string_view id);

struct Group {
    std::string_view name;
    std::vector<SettingsPane> panes;
};

/// In the order in which they first appear.
std::vector<Group> groups();

}
