#include "foundation/NSTask.h"

#include "host/Desktop.h"
#include "host/Tools.h"

NSTask::NSTask(std::string executablePath, std::vector<std::string> arguments)
    : executablePath_(std::move(executablePath))
    , arguments_(std::move(arguments))
{
}

NSTask::NSTask(NSTask&& other) noexcept = default;
NSTask::~NSTask() = default;

std::optional<NSError> NSTask::launchAndReturnError()
{
    std::string reason;
    running_ = host::Desktop::current().tools().launch({ executablePath_, arguments_, isSilent_ }, reason);
    return running_ ? std::nullopt : std::optional(NSError { std::move(reason) });
}

void NSTask::waitUntilExit()
{
    if (running_)
        running_->wait();
}
