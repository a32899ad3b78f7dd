#pragma once

#include "forms/Form.h"

#include <QListWidget>

#include <functional>

/// The list of a sidebar: groups with a header each, entries with a symbol, a title and a line below. Arrows and typing
/// go to an entry. Main thread.
class SidebarWidget final : public QListWidget {
public:
    explicit SidebarWidget(QWidget* parent = nullptr);

    void show(const std::vector<forms::SidebarSection>& sections, const std::string& selection);

    std::function<void(const std::string& id)> onSelect;
};
