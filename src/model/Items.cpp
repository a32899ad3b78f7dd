#include "model/Items.h"

#include "appkit/NSWorkspace.h"
#include "foundation/NSBundle.h"
#include "foundation/NSFileManager.h"
#include "model/Ordering.h"
#include "model/PinnedApps.h"
#include "settings/Settings.h"
#include "system/WindowIndex.h"

#include <unordered_map>
#include <unordered_set>

namespace {

using DockModel::PinnedApp;

constexpr const char* finderBundleID = "com.apple.finder";

/// A pinned application with the path that tells it from others.
struct PinnedEntry {
    PinnedApp app;
    std::string path;
};

std::optional<std::string> standardizedPath(const std::optional<NSURL>& url)
{
    return url ? std::optional(url->standardizedPath()) : std::nullopt;
}

/// What runs, as one reading of the workspace saw it.
class Running {
public:
    Running()
        : applications_(NSWorkspace::sharedWorkspace().runningApplications())
    {
        if (const auto frontmost = NSWorkspace::sharedWorkspace().frontmostApplication())
            frontmost_ = frontmost->processIdentifier();
        for (const NSRunningApplication& application : applications_) {
            if (auto identifier = application.bundleIdentifier())
                byIdentifier_[std::move(*identifier)] = application.processIdentifier();
            if (auto path = standardizedPath(application.bundleURL()))
                byPath_[std::move(*path)] = application.processIdentifier();
        }
    }

    const std::vector<NSRunningApplication>& applications() const { return applications_; }
    bool isFrontmost(std::optional<pid_t> pid) const { return pid && pid == frontmost_; }

    /// Whatever its policy.
    std::optional<pid_t> find(const std::string& path, const std::optional<std::string>& identifier) const
    {
        if (const auto place = byPath_.find(path); place != byPath_.end())
            return place->second;
        if (!identifier)
            return std::nullopt;
        const auto place = byIdentifier_.find(*identifier);
        return place == byIdentifier_.end() ? std::nullopt : std::optional(place->second);
    }

private:
    std::vector<NSRunningApplication> applications_;
    std::optional<pid_t> frontmost_;
    std::unordered_map<std::string, pid_t> byIdentifier_;
    std::unordered_map<std::string, pid_t> byPath_;
};

std::string displayName(const std::string& path)
{
    static constexpr std::string_view suffix = ".app";
    std::string name = NSFileManager::defaultManager().displayNameAtPath(path);
    for (auto place = name.find(suffix); place != std::string::npos; place = name.find(suffix, place))
        name.erase(place, suffix.size());
    return name;
}

/// The Dock's applications, then those that the bar adds itself.
std::vector<PinnedEntry> pinnedEntries()
{
    std::vector<PinnedEntry> entries;
    std::unordered_set<std::string> paths;
    const auto add = [&](PinnedApp app) {
        std::string path = app.bundleURL.standardizedPath();
        paths.insert(path);
        entries.push_back({ std::move(app), std::move(path) });
    };

    for (PinnedApp& app : DockModel::pinnedApps())
        add(std::move(app));
    const auto names = Settings::pinnedNames();
    for (const std::string& path : Settings::extraPinnedPaths()) {
        if (paths.contains(path))
            continue;
        const auto name = names.find(path);
        add({ NSURL::fileURLWithPath(path), name == names.end() ? displayName(path) : name->second });
    }
    return entries;
}

std::optional<std::string> bundleIdentifier(const NSURL& bundleURL)
{
    const auto bundle = NSBundle::initWithURL(bundleURL);
    return bundle ? bundle->bundleIdentifier() : std::nullopt;
}

/// Adds the pinned items that aren't hidden; gives the processes that they stand for.
std::unordered_set<pid_t> addPinned(const Running& running, std::vector<BarItem>& items)
{
    const auto keys = Settings::hiddenKeys();
    const std::unordered_set<std::string> hidden(keys.begin(), keys.end());
    std::unordered_set<pid_t> claimed;
    for (PinnedEntry& entry : pinnedEntries()) {
        BarItem item;
        item.bundleID = bundleIdentifier(entry.app.bundleURL);
        item.name = std::move(entry.app.name);
        if (hidden.contains(DockModel::key(item)))
            continue;
        item.bundleURL = std::move(entry.app.bundleURL);
        item.icon = NSWorkspace::sharedWorkspace().iconForFile(entry.path);
        item.isPinned = true;
        item.pid = running.find(entry.path, item.bundleID);
        item.isFrontmost = running.isFrontmost(item.pid);
        item.isLauncher = item.name == "Apps";
        if (item.pid)
            claimed.insert(*item.pid);
        items.push_back(std::move(item));
    }
    return claimed;
}

void addRunning(const Running& running, const std::unordered_set<pid_t>& claimed, std::vector<BarItem>& items)
{
    const auto ownIdentifier = NSBundle::mainBundle().bundleIdentifier();
    const bool barShowsFinder = Settings::showFinderButton();
    for (const NSRunningApplication& application : running.applications()) {
        const pid_t pid = application.processIdentifier();
        if (application.activationPolicy() != NSApplicationActivationPolicyRegular || claimed.contains(pid))
            continue;
        auto identifier = application.bundleIdentifier();
        if (identifier == ownIdentifier || (barShowsFinder && identifier == finderBundleID))
            continue;
        items.push_back({
            .name = application.localizedName().value_or("?"),
            .bundleID = std::move(identifier),
            .bundleURL = application.bundleURL(),
            .icon = application.icon(),
            .pid = pid,
            .isFrontmost = running.isFrontmost(pid),
        });
    }
}

}

std::vector<BarItem> DockModel::items()
{
    const Running running;
    std::vector<BarItem> items;
    const auto claimed = addPinned(running, items);
    addRunning(running, claimed, items);
    return ordered(std::move(items));
}

std::optional<BarItem> DockModel::finderItem()
{
    const auto finders = NSRunningApplication::runningApplications(finderBundleID);
    if (finders.empty())
        return std::nullopt;
    const NSRunningApplication& finder = finders.front();
    const auto frontmost = NSWorkspace::sharedWorkspace().frontmostApplication();
    return BarItem {
        .name = finder.localizedName().value_or("Finder"),
        .bundleID = finderBundleID,
        .bundleURL = finder.bundleURL(),
        .icon = finder.icon(),
        .isPinned = true,
        .pid = finder.processIdentifier(),
        .isFrontmost = frontmost && frontmost->bundleIdentifier() == finderBundleID,
        .demandsAttention = WindowIndex::demandsAttention(finder.processIdentifier()),
    };
}
