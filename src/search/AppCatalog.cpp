#include "search/AppCatalog.h"

#include "appkit/NSWorkspace.h"
#include "base/PerDesktop.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSString.h"
#include "log/Log.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace {

constexpr std::string_view bundleSuffix = ".app";
constexpr CGSize menuIconSize { 16, 16 };

struct Catalogue {
    std::vector<std::string> directories;
    std::optional<std::vector<AppEntry>> entries;
};

Catalogue& catalogue()
{
    return perDesktop<Catalogue>();
}

AppEntry entryAt(const std::string& path, std::string_view fileName)
{
    return { std::string(fileName.substr(0, fileName.size() - bundleSuffix.size())), NSURL::fileURLWithPath(path),
        NSWorkspace::sharedWorkspace().iconForFile(path) };
}

void addBundles(const std::string& folder, std::vector<AppEntry>& entries)
{
    const auto names = NSFileManager::defaultManager().contentsOfDirectory(folder);
    if (!names)
        return;
    for (const std::string& name : *names)
        if (name.ends_with(bundleSuffix))
            entries.push_back(entryAt(folder + '/' + name, name));
}

bool nameComesFirst(const AppEntry& a, const AppEntry& b)
{
    return localizedCaseInsensitiveCompare(a.name, b.name) == NSComparisonResult::orderedAscending;
}

std::vector<AppEntry> listed()
{
    std::vector<AppEntry> entries;
    for (const std::string& folder : AppCatalog::searchDirectories())
        addBundles(folder, entries);
    std::stable_sort(entries.begin(), entries.end(), nameComesFirst);
    Log::debug("catalog: ", entries.size(), " apps");
    return entries;
}

}

namespace AppCatalog {

const std::vector<std::string>& searchDirectories()
{
    auto& directories = catalogue().directories;
    if (directories.empty()) {
        const std::string home = NSHomeDirectory();
        directories = { "/Applications", "/Applications/Utilities", "/System/Applications",
            "/System/Applications/Utilities", "/System/Library/CoreServices", home + "/Applications",
            home + "/Applications/Chrome Apps.localized" };
    }
    return directories;
}

const std::vector<AppEntry>& all()
{
    auto& entries = catalogue().entries;
    if (!entries)
        entries = listed();
    return *entries;
}

std::vector<AppEntry> search(std::string_view query, std::size_t limit)
{
    const std::string wanted = lowercaseString(stringByTrimmingWhitespaces(query));
    if (wanted.empty())
        return {};

    std::vector<AppEntry> beginning;
    std::vector<AppEntry> within;
    for (const AppEntry& entry : all()) {
        const auto place = lowercaseString(entry.name).find(wanted);
        auto& group = place == 0 ? beginning : within;
        if (place != std::string::npos && group.size() < limit)
            group.push_back(entry);
    }
    beginning.insert(beginning.end(), within.begin(), within.end());
    if (beginning.size() > limit)
        beginning.erase(std::next(beginning.begin(), static_cast<std::ptrdiff_t>(limit)), beginning.end());
    return beginning;
}

void launch(const AppEntry& entry)
{
    Log::debug("launcher: opening ", entry.name);
    open(entry.url);
}

void open(const NSURL& url)
{
    NSWorkspace::sharedWorkspace().openApplicationAtURL(url, { .activates = true });
}

std::shared_ptr<NSMenu> buildMenu(const NSMenuItem::Action& action)
{
    auto menu = std::make_shared<NSMenu>();
    for (const AppEntry& entry : all()) {
        NSMenuItem& item = menu->addItem(entry.name, action);
        item.setRepresentedObject(entry.url);
        NSImage icon = entry.icon;
        icon.setSize(menuIconSize);
        item.setImage(std::move(icon));
    }
    return menu;
}

}
