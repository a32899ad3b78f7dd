#include "freedesktop/PanelPins.h"

#include "base/PreferenceFile.h"
#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <gio/gio.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <string_view>
#include <thread>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

constexpr const char* textType = "(sa{ss})";

struct Pins {
    /// As the settings have it; empty where it isn't set.
    std::string order;
    /// By their names.
    std::map<std::string, std::string> files;
};

std::string printed(const Pins& pins)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [name, content] : pins.files)
        g_variant_builder_add(&builder, "{ss}", name.c_str(), content.c_str());
    GVariant* value = g_variant_ref_sink(g_variant_new(textType, pins.order.c_str(), &builder));
    char* text = g_variant_print(value, TRUE);
    std::string result = text;
    g_free(text);
    g_variant_unref(value);
    return result;
}

Pins parsed(const std::string& text)
{
    Pins pins;
    GVariant* value = g_variant_parse(G_VARIANT_TYPE(textType), text.c_str(), nullptr, nullptr, nullptr);
    if (!value)
        return pins;
    GVariantIter* files = nullptr;
    char* order = nullptr;
    g_variant_get(value, textType, &order, &files);
    pins.order = order;
    char* name = nullptr;
    char* content = nullptr;
    while (g_variant_iter_next(files, "{ss}", &name, &content)) {
        pins.files.emplace(name, content);
        g_free(name);
        g_free(content);
    }
    g_free(order);
    g_variant_iter_free(files);
    g_variant_unref(value);
    return pins;
}

/// The names in their order, those last that it doesn't tell of.
std::vector<std::string> orderedNames(const Pins& pins)
{
    std::vector<std::string> names = textsOf(pins.order);
    std::erase_if(names, [&](const std::string& name) { return !pins.files.contains(name); });
    for (const auto& [name, content] : pins.files)
        if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    return names;
}

std::string printedOrder(const std::vector<std::string>& names)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& name : names)
        g_variant_builder_add(&builder, "s", name.c_str());
    GVariant* value = g_variant_ref_sink(g_variant_builder_end(&builder));
    char* text = g_variant_print(value, TRUE);
    std::string result = text;
    g_free(text);
    g_variant_unref(value);
    return result;
}

/// The path of the desktop entry that a file names; empty when it names none.
std::string entryOf(const std::string& content)
{
    constexpr std::string_view key = "Launcher=file://";
    const auto start = content.find(key);
    if (start == content.npos)
        return {};
    const auto end = std::min(content.find_first_of("\r\n", start), content.size());
    char* path = g_uri_unescape_string(content.substr(start + key.size(), end - start - key.size()).c_str(), nullptr);
    const std::string result = path ? path : "";
    g_free(path);
    return result.ends_with(".desktop") ? result : "";
}

std::map<std::string, std::string> filesIn(const std::string& folder)
{
    std::map<std::string, std::string> files;
    std::error_code error;
    for (const auto& file : fs::directory_iterator(folder, error))
        if (file.path().extension() == ".dockitem")
            files.emplace(file.path().filename().string(), contentsOf(file.path().string()));
    return files;
}

/// What a write that was killed has left.
void removeLeftovers(const std::string& folder)
{
    std::error_code error;
    std::vector<fs::path> leftovers;
    for (const auto& file : fs::directory_iterator(folder, error))
        if (file.path().stem().extension() == ".dockitem")
            leftovers.push_back(file.path());
    for (const fs::path& file : leftovers)
        fs::remove(file, error);
}

/// Also those that are there already: what comes after them would be taken in behind them.
bool replaceFiles(const std::string& folder, const Pins& pins)
{
    bool isDone = true;
    std::error_code error;
    fs::create_directories(folder, error);
    for (const auto& [name, content] : filesIn(folder))
        isDone = fs::remove(folder + '/' + name, error) && isDone;
    for (const std::string& name : orderedNames(pins))
        isDone = replaceFile(folder + '/' + name, pins.files.at(name), 0644).empty() && isDone;
    return isDone;
}

/// Until the dock has set an order, as one that runs does some time after its files have come.
void awaitOrder(PanelStore& store, const std::string& key)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds patience { 1100 };
    constexpr std::chrono::milliseconds pause { 50 };
    const auto end = Clock::now() + patience;
    while (!store.own(key) && Clock::now() < end)
        std::this_thread::sleep_for(pause);
}

}

std::vector<std::string> textsOf(const std::string& text)
{
    GVariant* list = g_variant_parse(G_VARIANT_TYPE_STRING_ARRAY, text.c_str(), nullptr, nullptr, nullptr);
    if (!list)
        return {};
    std::vector<std::string> result;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    for (char* each = nullptr; g_variant_iter_next(&iterator, "s", &each); g_free(each))
        result.emplace_back(each);
    g_variant_unref(list);
    return result;
}

PanelPins::PanelPins(const std::string& dock)
    : folder_(configFolder() + "/plank/" + dock + "/launchers")
{
}

std::string PanelPins::read(PanelStore& store, const std::string& key) const
{
    return printed({ store.own(key).value_or(""), filesIn(folder_) });
}

bool PanelPins::write(PanelStore& store, const std::string& key, const std::string& text, bool isLive) const
{
    const Pins pins = parsed(text);
    removeLeftovers(folder_);
    const bool areFilesNew = filesIn(folder_) != pins.files;
    const bool areFilesDone = !areFilesNew || replaceFiles(folder_, pins);
    if (!pins.order.empty())
        return store.set(key, pins.order) && areFilesDone;
    bool isUnset = store.set(key, std::nullopt);
    if (isLive && areFilesNew) {
        awaitOrder(store, key);
        isUnset = store.set(key, std::nullopt);
    }
    return isUnset && areFilesDone;
}

std::vector<std::string> PanelPins::entries(const std::string& text)
{
    const Pins pins = parsed(text);
    std::vector<std::string> entries;
    for (const std::string& name : orderedNames(pins))
        if (std::string entry = entryOf(pins.files.at(name)); !entry.empty())
            entries.push_back(std::move(entry));
    return entries;
}

std::string PanelPins::withoutPrograms(const std::string& text)
{
    Pins pins = parsed(text);
    std::erase_if(pins.files, [](const auto& file) { return !entryOf(file.second).empty(); });
    pins.order = printedOrder(orderedNames(pins));
    return printed(pins);
}

std::string PanelPins::withAdded(const std::string& had, const std::string& now)
{
    Pins all = parsed(had);
    std::vector<std::string> names = orderedNames(all);
    bool isMore = false;
    const Pins present = parsed(now);
    for (const std::string& name : orderedNames(present)) {
        if (!all.files.contains(name))
            names.push_back(name);
        const std::string& content = present.files.at(name);
        isMore |= all.files.insert_or_assign(name, content).second;
    }
    if (!isMore)
        return had;
    all.order = printedOrder(names);
    return printed(all);
}

}
