#include "freedesktop/DesktopEntries.h"

#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <glib.h>

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <unordered_set>
#include <utility>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), g_ascii_tolower);
    return result;
}

/// Programs that only run others; which one an entry means, its first word doesn't tell.
bool isWrapper(std::string_view executable)
{
    static constexpr std::string_view wrappers[]
        = { "sh", "bash", "flatpak", "snap", "python3", "java", "gjs", "exo-open", "xdg-open", "gio" };
    return std::ranges::find(wrappers, executable) != std::end(wrappers);
}

/// By its first line.
bool isShellScript(const std::string& program)
{
    const std::unique_ptr<char, decltype(&g_free)> path(g_find_program_in_path(program.c_str()), g_free);
    if (!path)
        return false;
    std::string line;
    std::getline(std::ifstream(path.get()), line);
    return line.starts_with("#!") && line.find("sh") != line.npos;
}

std::vector<std::string> languages()
{
    std::vector<std::string> result;
    for (const char* const* name = g_get_language_names(); *name; ++name)
        result.emplace_back(*name);
    return result;
}

std::vector<std::string> desktopNames()
{
    const char* variable = std::getenv("XDG_CURRENT_DESKTOP");
    std::istringstream list(variable ? variable : "");
    std::vector<std::string> result;
    for (std::string name; std::getline(list, name, ':');)
        result.push_back(name);
    return result;
}

bool isInstalled(const DesktopEntry& entry)
{
    if (entry.tryExecutable.empty())
        return true;
    const std::unique_ptr<char, decltype(&g_free)> path(g_find_program_in_path(entry.tryExecutable.c_str()), g_free);
    return path != nullptr;
}

/// What a file may be called for this name.
std::string fileName(std::string name)
{
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::iscntrl(c); }, ' ');
    std::ranges::replace(name, '/', '-');
    return name;
}

/// The entries below a folder of data, by their ids; of two files with one id the caller keeps the earlier.
void readFolder(const std::string& folder, const EntryReader& reader, std::map<std::string, DesktopEntry>& entries)
{
    std::error_code error;
    for (auto each = fs::recursive_directory_iterator(folder, error); !error && each != fs::end(each);
         each.increment(error)) {
        if (each->path().extension() != ".desktop" || !each->is_regular_file(error))
            continue;
        std::string id = each->path().string().substr(folder.size() + 1);
        id.resize(id.size() - std::string_view(".desktop").size());
        std::ranges::replace(id, '/', '-');
        if (entries.contains(id))
            continue;
        auto entry = parseDesktopEntry(contentsOf(each->path().string()), reader);
        if (!entry)
            entry.emplace();
        entry->isHidden |= !isInstalled(*entry);
        entry->id = id;
        entry->file = each->path().string();
        entries.emplace(std::move(id), *std::move(entry));
    }
}

/// Entries that menus show come first, so that they get the plain names.
std::vector<DesktopEntries::Handle> withPaths(const std::map<std::string, DesktopEntry>& entries)
{
    std::vector<const DesktopEntry*> order;
    for (const auto& [id, entry] : entries) {
        if (!entry.name.empty())
            order.push_back(&entry);
    }
    std::ranges::stable_partition(order, [](const DesktopEntry* entry) { return !entry->isHidden; });

    std::vector<DesktopEntries::Handle> result;
    std::unordered_set<std::string> used;
    for (const DesktopEntry* entry : order) {
        std::string name = fileName(entry->name);
        if (!used.insert(name).second) {
            name += " (" + entry->id + ')';
            used.insert(name);
        }
        result.push_back(std::make_shared<DesktopEntries::Installed>(*entry, "/Applications/" + name + ".app"));
    }
    return result;
}

}

bool isStartedBy(const DesktopEntry& ofWindows, const DesktopEntry& starter)
{
    const auto isOne
        = [](const std::string& a, const std::string& b) { return !a.empty() && lowered(a) == lowered(b); };
    if (isOne(ofWindows.startupWmClass, starter.startupWmClass))
        return true;
    if (isWrapper(starter.executable) || isShellScript(starter.program))
        return ofWindows.isFileManager;
    return isOne(ofWindows.executable, starter.executable);
}

bool DesktopEntries::readIfChanged()
{
    std::vector<Folder> folders;
    for (const std::string& data : dataFolders()) {
        const std::string folder = data + "/applications";
        struct stat status { };
        if (stat(folder.c_str(), &status) == 0)
            folders.push_back({ folder, status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec });
    }
    if (folders == folders_)
        return false;

    std::map<std::string, DesktopEntry> entries;
    const EntryReader reader { languages(), desktopNames() };
    for (const Folder& folder : folders)
        readFolder(folder.path, reader, entries);
    byPath_.clear();
    byId_.clear();
    entries_ = withPaths(entries);
    for (const Handle& each : entries_) {
        byPath_.emplace(each->bundlePath, each);
        byId_.emplace(each->entry.id, each);
    }
    folders_ = std::move(folders);
    return true;
}

std::vector<DesktopEntries::Handle> DesktopEntries::visible()
{
    readIfChanged();
    std::vector<Handle> result;
    // A program can bring several entries: one for each of its old identifiers, or a copy that a user made.
    std::set<std::pair<std::string_view, std::string_view>> known;
    for (const Handle& each : entries_) {
        const DesktopEntry& entry = each->entry;
        if (entry.isHidden)
            continue;
        if (entry.commandLine.empty() || known.emplace(entry.name, entry.commandLine).second)
            result.push_back(each);
    }
    return result;
}

DesktopEntries::Handle DesktopEntries::find(const Index& index, std::string_view key)
{
    const auto search = [&]() -> Handle {
        const auto found = index.find(key);
        return found == index.end() ? nullptr : found->second;
    };
    const Handle known = search();
    if (known || !readIfChanged())
        return known;
    return search();
}

DesktopEntries::Handle DesktopEntries::withPath(std::string_view bundlePath)
{
    return find(byPath_, bundlePath);
}

DesktopEntries::Handle DesktopEntries::withId(std::string_view id)
{
    return find(byId_, id);
}

DesktopEntries::Handle DesktopEntries::ofWindow(
    const std::string& className, const std::string& instanceName, pid_t pid)
{
    const Handle known = search(className, instanceName, pid);
    if (known || !readIfChanged())
        return known;
    return search(className, instanceName, pid);
}

DesktopEntries::Handle DesktopEntries::search(
    const std::string& className, const std::string& instanceName, pid_t pid) const
{
    const std::string names[] = { lowered(className), lowered(instanceName) };
    const std::string program = programOf(pid);
    const auto isName = [&](std::string_view text) {
        return !text.empty() && std::ranges::find(names, lowered(text)) != std::end(names);
    };
    const std::function<bool(const DesktopEntry&)> matches[] = {
        [&](const DesktopEntry& entry) { return isName(entry.startupWmClass); },
        [&](const DesktopEntry& entry) { return isName(entry.id); },
        [&](const DesktopEntry& entry) { return isName(entry.id.substr(entry.id.rfind('.') + 1)); },
        [&](const DesktopEntry& entry) {
            return !entry.runsInTerminal && !program.empty() && !isWrapper(program) && entry.executable == program;
        },
    };
    for (const auto& match : matches) {
        const auto found = std::ranges::find_if(entries_, [&](const Handle& each) { return match(each->entry); });
        if (found != entries_.end())
            return *found;
    }
    return nullptr;
}

}
