#include "embedded/CallLog.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace embedded {

std::vector<Call> CallLog::named(std::string_view name, std::optional<pid_t> pid) const
{
    std::vector<Call> found;
    std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(found),
        [&](const Call& call) { return call.name == name && (!pid || call.pid == *pid); });
    return found;
}

void CallLog::add(Call call)
{
    if (!recording_)
        return;
    call.nanoseconds = RunLoop::main().clock().nanoseconds();
    calls_.push_back(std::move(call));
}

}
