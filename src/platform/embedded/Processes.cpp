#include "embedded/Processes.h"

#include "base/Executable.h"

#include "embedded/CallLog.h"
#include "embedded/FaultBox.h"
#include "embedded/World.h"

namespace embedded {

namespace {

bool refusesToHide(ProcessFaults& faults)
{
    if (faults.refusesToHide == Refusal::never)
        return false;
    if (faults.refusesToHide == Refusal::once)
        faults.refusesToHide = Refusal::never;
    return true;
}

}

const std::vector<std::shared_ptr<const host::Process>>& Processes::running()
{
    std::vector<std::shared_ptr<const host::Process>> now;
    for (const RunningProcess& process : world_.processes())
        now.push_back(process.record);
    // Left alone while it is right, for callers that still walk through it.
    if (running_ != now)
        running_ = std::move(now);
    return running_;
}

std::shared_ptr<const host::Process> Processes::find(pid_t pid)
{
    if (const RunningProcess* process = world_.process(pid))
        return process->record;
    // Another of this program on the same files, which hasn't this desktop to itself.
    const std::string program = executableOf(pid);
    if (program.empty() || program != executableOf(::getpid()))
        return nullptr;
    return std::make_shared<const host::Process>(
        host::Process { pid, host::ActivationPolicy::accessory, "com.merrowen.vantry", {}, "Vantry", nullptr, false });
}

std::optional<pid_t> Processes::frontmost()
{
    return world_.frontmost();
}

bool Processes::activate(pid_t pid)
{
    return request(pid, "activate", [](World& world, pid_t each) { world.activate(each); });
}

bool Processes::hide(pid_t pid)
{
    if (world_.process(pid) && refusesToHide(world_.processFaults(pid)))
        return request(pid, "hide", [](World&, pid_t) {});
    return request(pid, "hide", [](World& world, pid_t each) { world.hide(each); });
}

bool Processes::unhide(pid_t pid)
{
    return request(pid, "unhide", [](World& world, pid_t each) { world.unhide(each); });
}

bool Processes::terminate(pid_t pid)
{
    return request(pid, "terminate", [](World& world, pid_t each) { world.quit(each); });
}

bool Processes::forceTerminate(pid_t pid)
{
    return request(pid, "forceTerminate", [](World& world, pid_t each) { world.quit(each); });
}

/// The request is taken now; the application follows it in its own time.
bool Processes::request(pid_t pid, const char* name, Effect effect)
{
    if (!world_.process(pid))
        return false;
    log_.add({ .pid = pid, .name = name, .value = {} });

    ProcessFaults& faults = world_.processFaults(pid);
    if (faults.diesAt == name) {
        world_.quit(pid);
        return false;
    }
    if (takeFailure(faults.fails, name))
        return false;
    later_.atNextTurn([this, pid, effect] { effect(world_, pid); });
    return true;
}

}
