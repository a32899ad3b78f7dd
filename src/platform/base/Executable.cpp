#include "base/Executable.h"

#include <filesystem>
#include <string_view>

std::string executableOf(pid_t pid)
{
    constexpr std::string_view removed = " (deleted)";
    std::error_code error;
    std::string path = std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).string();
    if (path.ends_with(removed))
        path.resize(path.size() - removed.size());
    return path;
}
