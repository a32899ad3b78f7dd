#include "freedesktop/PanelFollower.h"

#include "freedesktop/ProcessFiles.h"

#include <glib.h>

#include <filesystem>
#include <utility>

namespace freedesktop {
namespace {

/// Seconds: a panel changes several settings at a time.
constexpr double patience = 0.1;

std::optional<PanelDock::Tile> tileOf(DesktopEntries& entries, const std::string& desktopEntry)
{
    const auto entry = entries.withId(std::filesystem::path(desktopEntry).stem().string());
    if (!entry)
        return std::nullopt;
    char* path = g_uri_escape_string(entry->bundlePath.c_str(), "/", TRUE);
    PanelDock::Tile tile { entry->entry.name, "file://" + std::string(path) + '/' };
    g_free(path);
    return tile;
}

}

PanelFollower::~PanelFollower()
{
    if (looking_)
        RunLoop::main().cancel(*looking_);
}

void PanelFollower::setOwners(const std::set<pid_t>& owners)
{
    if (owners_ == owners)
        return;
    owners_ = owners;
    std::vector<std::string> programs;
    for (const pid_t pid : owners)
        programs.push_back(programOf(pid));
    const bool isFirst = !std::exchange(hasLooked_, true);
    if (programs != programs_ || isFirst) {
        programs_ = std::move(programs);
        look();
    }
}

void PanelFollower::look()
{
    const auto panel
        = PanelDock::takeIn(programs_, [this](const std::string& entry) { return tileOf(entries_, entry); });
    if (std::exchange(panel_, panel) == panel)
        return;
    store_ = panel ? panel->kind->open(panel->name) : nullptr;
    if (store_)
        store_->follow([this] { lookSoon(); });
}

void PanelFollower::lookSoon()
{
    if (looking_)
        return;
    looking_ = RunLoop::main().schedule(patience, [this] {
        looking_.reset();
        look();
    });
}

}
