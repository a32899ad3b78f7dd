#pragma once

#include "freedesktop/InstalledApplications.h"
#include "host/Processes.h"

/// Processes that the program looks for and that no window tells of.
namespace freedesktop::StandIns {

/// No system call is ever made with these numbers.
inline constexpr pid_t finder = -1000;
inline constexpr pid_t dock = -1001;

host::Process dockProcess(const std::shared_ptr<const IconSource>& icon);
/// This program, in this process or in another.
host::Process ownProcess(pid_t pid, const std::shared_ptr<const IconSource>& icon);
/// The same of a process that may be one of this program, on whatever display; null when it isn't.
std::shared_ptr<const host::Process> instance(pid_t pid, const std::shared_ptr<const IconSource>& icon);
/// The Finder always runs: the application that opens folders, or what stands for it, and comes first. What stands for
/// it has nothing to show, and so is hidden. Its number; 0 when no application opens folders.
pid_t addFinder(std::vector<host::Process>& processes, InstalledApplications& applications);

}
