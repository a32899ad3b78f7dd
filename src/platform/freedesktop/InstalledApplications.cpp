#include "freedesktop/InstalledApplications.h"

#include "freedesktop/Launching.h"
#include "freedesktop/UserFolders.h"

#include <glib.h>

#include <filesystem>

namespace freedesktop {
namespace {

/// The list of all applications, which on this desktop a program of its own shows.
constexpr const char* allApplicationsPath = "/System/Applications/Apps.app";

std::string fileURL(const std::string& path)
{
    const std::unique_ptr<char, decltype(&g_free)> url(g_filename_to_uri(path.c_str(), nullptr, nullptr), g_free);
    return url ? url.get() : "";
}

std::string pathOf(const std::string& url)
{
    const std::unique_ptr<char, decltype(&g_free)> path(g_filename_from_uri(url.c_str(), nullptr, nullptr), g_free);
    std::string result = path ? path.get() : "";
    while (result.size() > 1 && result.ends_with('/'))
        result.pop_back();
    return result;
}

}

std::optional<std::string> InstalledApplications::identifier(const std::string& path)
{
    const Entry entry = entries_.withPath(path);
    return entry ? std::optional(identifierOf(entry)) : std::nullopt;
}

std::optional<std::string> InstalledApplications::displayName(const std::string& path)
{
    if (path == allApplicationsPath)
        return "Apps";
    const Entry entry = entries_.withPath(path);
    return entry ? std::optional(entry->entry.name) : std::nullopt;
}

std::shared_ptr<const IconSource> InstalledApplications::icon(const std::string& path)
{
    if (path == allApplicationsPath)
        return icons_.allApplications();
    if (path.ends_with(".app"))
        return iconOf(entries_.withPath(path));
    std::error_code error;
    const auto icon = icons_.named(std::filesystem::is_directory(path, error) ? "folder" : "text-x-generic");
    return icon ? icon : icons_.application();
}

std::optional<std::vector<std::string>> InstalledApplications::bundles(const std::string& folder)
{
    if (folder != "/Applications")
        return std::nullopt;
    std::vector<std::string> names;
    for (const Entry& entry : entries_.visible())
        names.push_back(entry->bundlePath.substr(folder.size() + 1));
    return names;
}

bool InstalledApplications::open(const std::string& path)
{
    if (path == allApplicationsPath)
        return Launching::launchApplicationFinder(notifier_);
    const Entry entry = entries_.withPath(path);
    if (!entry)
        return false;
    if (bringForward && bringForward(path, identifierOf(entry)))
        return true;
    return entry == folderHandler() ? openHome() : Launching::launchEntry(entry->entry.file, notifier_);
}

bool InstalledApplications::openAnother(const std::string& path)
{
    if (path == allApplicationsPath)
        return Launching::launchApplicationFinder(notifier_);
    const Entry entry = entries_.withPath(path);
    if (!entry)
        return false;
    return entry == folderHandler() ? openHome() : Launching::launchNewWindow(entry->entry.file, notifier_);
}

bool InstalledApplications::openHome()
{
    return Launching::openWithHandler(fileURL(homeFolder()), notifier_);
}

bool InstalledApplications::reveal(const std::string& url)
{
    return Launching::reveal(url, notifier_);
}

bool InstalledApplications::openURL(const std::string& url)
{
    if (pathOf(url) != homeFolder() + "/.Trash")
        return Launching::openWithHandler(url, notifier_);
    if (Launching::tryHandler("trash:///", notifier_))
        return true;
    // It comes into being with the first file that is thrown away.
    std::error_code error;
    std::filesystem::create_directories(trashFolder(), error);
    return Launching::openWithHandler(fileURL(trashFolder()), notifier_);
}

std::string InstalledApplications::identifierOf(const Entry& entry)
{
    return entry == folderHandler() ? finderIdentifier : entry->entry.id;
}

std::string InstalledApplications::identifierOfWindows(const Entry& entry)
{
    const Entry handler = folderHandler();
    return handler && isStartedBy(entry->entry, handler->entry) ? finderIdentifier : identifierOf(entry);
}

std::shared_ptr<const IconSource> InstalledApplications::iconOf(const Entry& entry)
{
    return entry ? icons_.ofApplication(entry->entry.icon) : icons_.application();
}

InstalledApplications::Entry InstalledApplications::folderHandler()
{
    if (!folderHandlerId_)
        folderHandlerId_ = Launching::handlerOf("inode/directory");
    return folderHandlerId_->empty() ? nullptr : entries_.withId(*folderHandlerId_);
}

}
