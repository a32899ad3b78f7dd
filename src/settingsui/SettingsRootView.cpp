#include "settingsui/SettingsRootView.h"

#include "settingsui/Panes.h"

namespace {

forms::Form bodyOf(SettingsPane pane, SettingsStore& store)
{
    switch (pane) {
    case SettingsPane::appearance:
        return AppearancePane { store }.body();
    case SettingsPane::buttons:
        return ButtonsPane { store }.body();
    case SettingsPane::windows:
        return WindowsPane { store }.body();
    case SettingsPane::dock:
        return DockPane { store }.body();
    case SettingsPane::shortcuts:
        return ShortcutsPane { store }.body();
    case SettingsPane::general:
        return GeneralPane { store }.body();
    }
    return {};
}

}

forms::NavigationSplitView SettingsRootView::body()
{
    using namespace SettingsPanes;
    forms::NavigationSplitView view;
    for (const Group& group : groups()) {
        forms::SidebarSection section { std::string(group.name), {} };
        for (const SettingsPane pane : group.panes)
            section.rows.push_back({ std::string(facts(pane).id), std::string(facts(pane).title),
                std::string(facts(pane).icon), summary(pane, store_) });
        view.sidebar.push_back(std::move(section));
    }
    view.selection = facts(selection_).id;
    view.select = [this](const std::string& id) { selection_ = withId(id); };
    view.narrowest = 220;
    view.ideal = 236;
    view.widest = 280;
    view.title = facts(selection_).title;
    view.detail = bodyOf(selection_, store_);
    return view;
}
