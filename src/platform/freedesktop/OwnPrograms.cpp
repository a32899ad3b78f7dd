#include "freedesktop/OwnPrograms.h"

#include "base/Executable.h"

#include <unistd.h>

#include <filesystem>

namespace freedesktop {

std::string ownExecutable()
{
    return executableOf(::getpid());
}

std::string besideOwnExecutable(const std::string& name)
{
    return (std::filesystem::path(ownExecutable()).parent_path() / name).string();
}

}
