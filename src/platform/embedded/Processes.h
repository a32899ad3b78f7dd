#pragma once

#include "embedded/Later.h"
#include "host/Processes.h"

namespace embedded {

class CallLog;
class World;

/// The running applications as the program sees them, and its requests to them. Main thread.
class Processes final : public host::Processes {
public:
    Processes(World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    const std::vector<std::shared_ptr<const host::Process>>& running() override;
    std::shared_ptr<const host::Process> find(pid_t pid) override;
    std::optional<pid_t> frontmost() override;

    bool activate(pid_t pid) override;
    bool hide(pid_t pid) override;
    bool unhide(pid_t pid) override;
    bool terminate(pid_t pid) override;
    bool forceTerminate(pid_t pid) override;

private:
    using Effect = void (*)(World&, pid_t);
    bool request(pid_t pid, const char* name, Effect effect);

    World& world_;
    CallLog& log_;
    std::vector<std::shared_ptr<const host::Process>> running_;
    Later later_;
};

}
