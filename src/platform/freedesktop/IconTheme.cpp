#include "freedesktop/IconTheme.h"

#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <glib.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace freedesktop {
namespace {

constexpr int wantedSize = 64;
constexpr int largestSize = 4096;
constexpr int largestScale = 16;
constexpr std::array extensions { ".svg", ".png", ".xpm" };

struct KeyFileDeleter {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

KeyFile read(const std::string& text)
{
    KeyFile file(g_key_file_new());
    const bool isRead = g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr);
    return isRead ? std::move(file) : nullptr;
}

std::string text(GKeyFile* file, const char* group, const char* key)
{
    const std::unique_ptr<char, decltype(&g_free)> value(g_key_file_get_string(file, group, key, nullptr), g_free);
    return value ? value.get() : "";
}

std::vector<std::string> list(const std::string& value)
{
    std::vector<std::string> parts;
    std::size_t from = 0;
    while (from < value.size()) {
        const std::size_t end = std::min(value.find(',', from), value.size());
        if (end > from)
            parts.push_back(value.substr(from, end - from));
        from = end + 1;
    }
    return parts;
}

bool exists(const std::string& path)
{
    return access(path.c_str(), R_OK) == 0;
}

/// The folders of themes and of loose pictures.
std::vector<std::string> iconFolders()
{
    std::vector<std::string> folders { homeFolder() + "/.icons" };
    for (const std::string& data : dataFolders())
        folders.push_back(data + "/icons");
    return folders;
}

std::string chosenTheme()
{
    for (const std::string& folder : { configFolder(), std::string("/etc") }) {
        const KeyFile settings = read(contentsOf(folder + "/gtk-3.0/settings.ini"));
        if (!settings)
            continue;
        if (std::string name = text(settings.get(), "Settings", "gtk-icon-theme-name"); !name.empty())
            return name;
    }
    return "Adwaita";
}

/// The folders of a theme that can hold icons of applications and files, the best to show first.
std::vector<std::string> sortedFolders(GKeyFile* index)
{
    struct Sized {
        std::string name;
        int rank;
    };
    static constexpr std::string_view contexts[] = { "", "Applications", "Places", "MimeTypes", "Legacy", "Devices" };
    std::vector<Sized> folders;
    for (std::string& name : list(text(index, "Icon Theme", "Directories"))) {
        if (std::ranges::find(contexts, text(index, name.c_str(), "Context")) == std::end(contexts))
            continue;
        const int size = std::clamp(g_key_file_get_integer(index, name.c_str(), "Size", nullptr), 0, largestSize)
            * std::clamp(g_key_file_get_integer(index, name.c_str(), "Scale", nullptr), 1, largestScale);
        const bool isScalable = text(index, name.c_str(), "Type") == "Scalable";
        const int rank = isScalable ? 0 : size >= wantedSize ? size : 1'000'000 - size;
        folders.push_back({ std::move(name), rank });
    }
    std::ranges::stable_sort(folders, {}, &Sized::rank);
    std::vector<std::string> names;
    std::ranges::transform(folders, std::back_inserter(names), &Sized::name);
    return names;
}

std::optional<std::string> pictureAt(const std::string& path)
{
    for (const char* extension : extensions) {
        if (exists(path + extension))
            return path + extension;
    }
    return std::nullopt;
}

}

const IconTheme::Theme& IconTheme::theme(const std::string& name)
{
    const auto [place, isNew] = themes_.try_emplace(name);
    Theme& theme = place->second;
    if (!isNew)
        return theme;
    // Several folders can each hold a part of a theme; the first that describes it does so for all.
    for (const std::string& folder : iconFolders()) {
        const std::string index = contentsOf(folder + '/' + name + "/index.theme");
        if (index.empty())
            continue;
        theme = parse(index);
        break;
    }
    return theme;
}

IconTheme::Theme IconTheme::parse(const std::string& index)
{
    const KeyFile file = read(index);
    if (!file)
        return {};
    return { sortedFolders(file.get()), list(text(file.get(), "Icon Theme", "Inherits")) };
}

const std::vector<std::string>& IconTheme::chain()
{
    if (!chain_.empty())
        return chain_;
    chain_.push_back(chosenTheme());
    for (std::size_t i = 0; i < chain_.size(); ++i) {
        for (const std::string& parent : theme(chain_[i]).parents) {
            if (std::ranges::find(chain_, parent) == chain_.end())
                chain_.push_back(parent);
        }
    }
    std::erase(chain_, "hicolor");
    chain_.push_back("hicolor");
    return chain_;
}

std::optional<std::string> IconTheme::find(const std::string& name)
{
    if (name.empty())
        return std::nullopt;
    if (name.front() == '/')
        return exists(name) ? std::optional(name) : std::nullopt;

    const auto folders = iconFolders();
    for (const std::string& themeName : chain()) {
        for (const std::string& folder : folders) {
            const std::string base = folder + '/' + themeName + '/';
            if (!exists(base))
                continue;
            for (const std::string& size : theme(themeName).folders) {
                if (auto path = pictureAt(base + size + '/' + name))
                    return path;
            }
        }
    }
    std::vector<std::string> loose = folders;
    for (const std::string& data : dataFolders())
        loose.push_back(data + "/pixmaps");
    for (const std::string& folder : loose) {
        // Entries of old programs name the file with its extension.
        if (exists(folder + '/' + name))
            return folder + '/' + name;
        if (auto path = pictureAt(folder + '/' + name))
            return path;
    }
    return std::nullopt;
}

}
