#include "foundation/NSProcessInfo.h"

#include <unistd.h>

#include <cstdlib>

std::optional<std::string> NSProcessInfo::environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

pid_t NSProcessInfo::processIdentifier()
{
    return ::getpid();
}

uid_t NSProcessInfo::userIdentifier()
{
    return ::getuid();
}
