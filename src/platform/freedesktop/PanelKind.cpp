#include "freedesktop/PanelKind.h"

#include "base/PreferenceFile.h"
#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <gio/gio.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

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

/// "p=10;x=0;y=0": the number says which corner or edge the panel snaps to.
PanelEdge edgeNumbered(const std::string& place)
{
    const auto start = place.find("p=");
    int number = 0;
    if (start != place.npos)
        std::from_chars(place.data() + start + 2, place.data() + place.size(), number);
    switch (number) {
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

std::vector<std::string> texts(GVariant* list)
{
    std::vector<std::string> result;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    for (char* text = nullptr; g_variant_iter_next(&iterator, "s", &text); g_free(text))
        result.emplace_back(text);
    return result;
}

std::vector<std::string> textsOf(const std::string& printed)
{
    GVariant* list = g_variant_parse(G_VARIANT_TYPE_STRING_ARRAY, printed.c_str(), nullptr, nullptr, nullptr);
    if (!list)
        return {};
    auto result = texts(list);
    g_variant_unref(list);
    return result;
}

Panels oneDock()
{
    return { "dock1" };
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
    { "plank", "plank", oneDock, openDock, "position", edgeNamed, "hide-mode", "'auto'", "icon-size", "", 48, 24,
        "dock-items" },
    { "xfce4-panel", "xfce4-panel", xfcePanels, openXfcePanel, "position", edgeNumbered, "autohide-behavior",
        "uint32 2", "size", "uint32 ", 48, 16, nullptr },
    { "mate-panel", "mate-panel", toplevels, openToplevel, "orientation", edgeNamed, "auto-hide", "true", "size", "",
        24, 12, nullptr },
    { "lxqt-panel", "lxqt-panel", lxqtPanels, openLxqtPanel, "position", edgeNamed, "hidable", "true", "panelSize", "",
        32, 16, nullptr },
};

std::string launcherFolder()
{
    return configFolder() + "/plank/dock1/launchers";
}

using Files = std::map<std::string, std::string>;

Files launcherFiles()
{
    Files files;
    std::error_code error;
    for (const auto& file : fs::directory_iterator(launcherFolder(), error))
        if (file.path().extension() == ".dockitem")
            files.emplace(file.path().filename().string(), contentsOf(file.path().string()));
    return files;
}

/// The list as the panel has it ("" where it isn't set), and the files.
constexpr const char* pinsType = "(sa{ss})";

std::string printedPins(const std::string& list, const Files& files)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [name, content] : files)
        g_variant_builder_add(&builder, "{ss}", name.c_str(), content.c_str());
    GVariant* pins = g_variant_ref_sink(g_variant_new(pinsType, list.c_str(), &builder));
    char* text = g_variant_print(pins, TRUE);
    std::string result = text;
    g_free(text);
    g_variant_unref(pins);
    return result;
}

struct Pins {
    std::string list;
    Files files;
};

Pins parsedPins(const std::string& text)
{
    Pins pins;
    GVariant* value = g_variant_parse(G_VARIANT_TYPE(pinsType), text.c_str(), nullptr, nullptr, nullptr);
    if (!value)
        return pins;
    GVariantIter* files = nullptr;
    char* list = nullptr;
    g_variant_get(value, pinsType, &list, &files);
    pins.list = list;
    char* name = nullptr;
    char* content = nullptr;
    while (g_variant_iter_next(files, "{ss}", &name, &content)) {
        pins.files.emplace(name, content);
        g_free(name);
        g_free(content);
    }
    g_free(list);
    g_variant_iter_free(files);
    g_variant_unref(value);
    return pins;
}

/// The names of the files, those that the list leaves out last.
std::vector<std::string> inOrder(const Pins& pins)
{
    std::vector<std::string> names = textsOf(pins.list);
    std::erase_if(names, [&](const std::string& name) { return !pins.files.contains(name); });
    for (const auto& [name, content] : pins.files)
        if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    return names;
}

/// Also those that are there already: what comes after them would be taken in behind them.
bool replaceLauncherFiles(const Pins& pins)
{
    bool isDone = true;
    std::error_code error;
    fs::create_directories(launcherFolder(), error);
    for (const auto& [name, content] : launcherFiles())
        isDone = fs::remove(launcherFolder() + '/' + name, error) && isDone;
    for (const std::string& name : inOrder(pins))
        isDone = replaceFile(launcherFolder() + '/' + name, pins.files.at(name), 0644).empty() && isDone;
    return isDone;
}

/// The path of the desktop entry that a launcher's file names; empty when it names none.
std::string entryOf(const std::string& launcher)
{
    constexpr std::string_view key = "Launcher=file://";
    const auto start = launcher.find(key);
    if (start == launcher.npos)
        return {};
    const auto end = std::min(launcher.find_first_of("\r\n", start), launcher.size());
    char* path = g_uri_unescape_string(launcher.substr(start + key.size(), end - start - key.size()).c_str(), nullptr);
    const std::string result = path ? path : "";
    g_free(path);
    return result.ends_with(".desktop") ? result : "";
}

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

std::string pinsText(const PanelKind& kind, PanelStore& store)
{
    return printedPins(store.own(kind.pinsKey).value_or(""), launcherFiles());
}

std::vector<std::string> pinnedEntries(const std::string& pinsText)
{
    const Pins pins = parsedPins(pinsText);
    std::vector<std::string> entries;
    for (const std::string& name : inOrder(pins))
        if (std::string entry = entryOf(pins.files.at(name)); !entry.empty())
            entries.push_back(std::move(entry));
    return entries;
}

bool setPins(const PanelKind& kind, PanelStore& store, const std::string& pinsText)
{
    const Pins pins = parsedPins(pinsText);
    const bool isDone = launcherFiles() == pins.files || replaceLauncherFiles(pins);
    return store.set(kind.pinsKey, pins.list.empty() ? std::nullopt : std::optional(pins.list)) && isDone;
}

std::string noPins()
{
    return printedPins("@as []", {});
}

}
