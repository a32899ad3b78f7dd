#pragma once

#include "embedded/CallLog.h"
#include "embedded/Session.h"
#include "embedded/World.h"
#include "host/Tools.h"

#include <iosfwd>

namespace embedded {

/// The tools, at work in this process on the session's files: "defaults", "killall" and "launchctl". Main thread.
class Tools final : public host::Tools {
public:
    Tools(World& world, Session& session, CallLog& log)
        : world_(world)
        , session_(session)
        , log_(log)
    {
    }

    std::unique_ptr<host::RunningTool> launch(const Run& run, std::string& reason) override;

private:
    void killall(const std::vector<std::string>& arguments, std::ostream& errors);
    void launchctl(const std::vector<std::string>& arguments, std::ostream& errors);

    World& world_;
    Session& session_;
    CallLog& log_;
};

}
