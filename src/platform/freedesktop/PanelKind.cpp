#include "freedesktop/PanelKind.h"

#include "freedesktop/PanelPins.h"
#include "freedesktop/UserFolders.h"

#include <gio/gio.h>

#include <algorithm>
#include <charconv>

namespace freedesktop {
namespace {

using Panels = std::vector<std::string>;
using Store = std::unique_ptr<PanelStore>;

PanelEdge edgeNamed(const std::string& place)
{
    if (place.find("bottom") != place.npos || place.find("Bottom") != place.npos)
        return PanelEdge::bottom;
    if (place.find("top") != place.npos || place.find("Top") != place.npos)
        return PanelEdge::top;
    return PanelEdge::other;
}

PanelEdge edgeOfDock(PanelStore& dock)
{
    return edgeNamed(dock.inForce("position").value_or(""));
}

PanelEdge edgeOfToplevel(PanelStore& toplevel)
{
    return edgeNamed(toplevel.inForce("orientation").value_or(""));
}

PanelEdge edgeOfLxqtPanel(PanelStore& panel)
{
    return edgeNamed(panel.own("position").value_or("Bottom"));
}

/// "p=10;x=0;y=0": the number says which corner or edge the panel snaps to.
PanelEdge edgeOfXfcePanel(PanelStore& panel)
{
    const std::string place = panel.own("position").value_or("");
    const auto start = place.find("p=");
    int number = 0;
    if (start != place.npos)
        std::from_chars(place.data() + start + 2, place.data() + place.size(), number);
    const bool isUpright = panel.own("mode").value_or("uint32 0") == "uint32 1";
    switch (isUpright ? 0 : number) {
    case 4:
    case 8:
    case 10:
    case 12:
        return PanelEdge::bottom;
    case 2:
    case 6:
    case 9:
    case 11:
        return PanelEdge::top;
    default:
        return PanelEdge::other;
    }
}

Panels docks()
{
    const Store all = settingsOfSchema("net.launchpad.plank", "/net/launchpad/plank/");
    return all ? textsOf(all->inForce("enabled-docks").value_or("")) : Panels();
}

Store openDock(const std::string& dock)
{
    return settingsOfSchema("net.launchpad.plank.dock.settings", "/net/launchpad/plank/docks/" + dock + "/");
}

Panels toplevels()
{
    const Store all = settingsOfSchema("org.mate.panel", "/org/mate/panel/general/");
    return all ? textsOf(all->inForce("toplevel-id-list").value_or("")) : Panels();
}

Store openToplevel(const std::string& toplevel)
{
    return settingsOfSchema("org.mate.panel.toplevel", "/org/mate/panel/toplevels/" + toplevel + "/");
}

Panels xfcePanels()
{
    const Store all = xfconfProperties("xfce4-panel", "/");
    GVariant* list
        = g_variant_parse(nullptr, all->own("panels").value_or("[<int32 1>]").c_str(), nullptr, nullptr, nullptr);
    Panels panels;
    for (gsize i = 0; list && i < g_variant_n_children(list); ++i) {
        GVariant* boxed = g_variant_get_child_value(list, i);
        GVariant* number
            = g_variant_is_of_type(boxed, G_VARIANT_TYPE_VARIANT) ? g_variant_get_variant(boxed) : g_variant_ref(boxed);
        if (g_variant_is_of_type(number, G_VARIANT_TYPE_INT32))
            panels.push_back("panel-" + std::to_string(g_variant_get_int32(number)));
        g_variant_unref(number);
        g_variant_unref(boxed);
    }
    if (list)
        g_variant_unref(list);
    return panels;
}

Store openXfcePanel(const std::string& panel)
{
    return xfconfProperties("xfce4-panel", "/panels/" + panel + "/");
}

std::string lxqtFile()
{
    return configFolder() + "/lxqt/panel.conf";
}

Panels lxqtPanels()
{
    const std::string names = keysOfFile(lxqtFile(), "General")->own("panels").value_or("panel1");
    Panels panels;
    for (std::size_t start = 0; start <= names.size();) {
        const auto end = std::min(names.find(',', start), names.size());
        const std::string name = names.substr(start, end - start);
        const auto first = name.find_first_not_of(' ');
        if (first != name.npos)
            panels.push_back(name.substr(first, name.find_last_not_of(' ') - first + 1));
        start = end + 1;
    }
    return panels;
}

Store openLxqtPanel(const std::string& panel)
{
    return keysOfFile(lxqtFile(), panel);
}

const PanelKind kinds[] = {
    { "plank", docks, openDock, edgeOfDock, "hide-mode", "'auto'", "icon-size", "", 48, 24, "dock-items", false },
    { "xfce4-panel", xfcePanels, openXfcePanel, edgeOfXfcePanel, "autohide-behavior", "uint32 2", "size", "uint32 ", 48,
        16, nullptr, false },
    { "mate-panel", toplevels, openToplevel, edgeOfToplevel, "auto-hide", "true", "size", "", 24, 12, nullptr, false },
    { "lxqt-panel", lxqtPanels, openLxqtPanel, edgeOfLxqtPanel, "hidable", "true", "panelSize", "", 32, 16, nullptr,
        true },
};

}

std::span<const PanelKind> panelKinds()
{
    return kinds;
}

const PanelKind* panelKindNamed(std::string_view name)
{
    const auto* kind = std::ranges::find_if(kinds, [&](const PanelKind& each) { return each.name == name; });
    return kind == std::end(kinds) ? nullptr : kind;
}

}
