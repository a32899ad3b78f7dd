#include "log/Log.h"

#include "foundation/NSFileHandle.h"
#include "foundation/NSProcessInfo.h"

#include <utility>

namespace {

/// Absent while logging is off.
Log::Sink& sink()
{
    static Log::Sink sink
        = NSProcessInfo::environment("BAR_DEBUG") == "1" ? Log::Sink(NSFileHandle::writeToStandardError) : nullptr;
    return sink;
}

}

bool Log::enabled()
{
    return static_cast<bool>(sink());
}

void Log::debug(std::string_view message)
{
    if (!enabled())
        return;
    std::string line = "[bar] ";
    line += message;
    line += '\n';
    sink()(line);
}

void Log::setSink(Sink replacement)
{
    sink() = std::move(replacement);
}
