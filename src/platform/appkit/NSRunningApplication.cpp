#include "appkit/NSRunningApplication.h"

#include "host/Desktop.h"
#include "host/Processes.h"

namespace {
host::Processes& processes()
{
    return host::Desktop::current().processes();
}
}

std::optional<NSRunningApplication> NSRunningApplication::runningApplication(pid_t pid)
{
    auto process = processes().find(pid);
    return process ? std::optional<NSRunningApplication>(std::move(process)) : std::nullopt;
}

std::vector<NSRunningApplication> NSRunningApplication::runningApplications(const std::string& bundleIdentifier)
{
    std::vector<NSRunningApplication> matching;
    for (const auto& process : processes().running())
        if (process->bundleIdentifier == bundleIdentifier)
            matching.emplace_back(process);
    return matching;
}

pid_t NSRunningApplication::processIdentifier() const
{
    return process_->pid;
}

int NSRunningApplication::activationPolicy() const
{
    return static_cast<int>(process_->policy);
}

const std::optional<std::string>& NSRunningApplication::bundleIdentifier() const
{
    return process_->bundleIdentifier;
}

std::optional<NSURL> NSRunningApplication::bundleURL() const
{
    return process_->bundlePath ? std::optional(NSURL::fileURLWithPath(*process_->bundlePath)) : std::nullopt;
}

const std::optional<std::string>& NSRunningApplication::localizedName() const
{
    return process_->localizedName;
}

std::optional<NSImage> NSRunningApplication::icon() const
{
    return process_->icon ? std::optional<NSImage>(process_->icon) : std::nullopt;
}

bool NSRunningApplication::isHidden() const
{
    const auto now = processes().find(process_->pid);
    return now && now->isHidden;
}

bool NSRunningApplication::isActive() const
{
    return processes().frontmost() == process_->pid;
}

bool NSRunningApplication::hide() const
{
    return processes().hide(process_->pid);
}

bool NSRunningApplication::unhide() const
{
    return processes().unhide(process_->pid);
}

bool NSRunningApplication::activate() const
{
    return processes().activate(process_->pid);
}

bool NSRunningApplication::terminate() const
{
    return processes().terminate(process_->pid);
}

bool NSRunningApplication::forceTerminate() const
{
    return processes().forceTerminate(process_->pid);
}
