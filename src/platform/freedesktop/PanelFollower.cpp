#include "freedesktop/PanelFollower.h"

#include "freedesktop/ProcessFiles.h"

#include <algorithm>
#include <utility>

namespace freedesktop {
namespace {

/// Seconds: a panel changes several settings at a time.
constexpr double patience = 0.1;

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
    if (programs_ == programs)
        return;
    programs_ = std::move(programs);
    look();
    follow();
}

void PanelFollower::look()
{
    PanelDock::takeIn(*programs_, entries_);
}

/// All panels of those programs: another one may come to the bar's edge, or the bar to another edge.
void PanelFollower::follow()
{
    followed_.clear();
    for (const PanelKind& kind : panelKinds())
        if (std::ranges::find(*programs_, kind.name) != programs_->end())
            for (const std::string& panel : kind.panels())
                followed_.push_back(kind.open(panel));
    std::erase(followed_, nullptr);
    if (!followed_.empty())
        followed_.push_back(PanelDock::barSettings());
    for (const auto& store : followed_)
        store->follow([this] { lookSoon(); });
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
