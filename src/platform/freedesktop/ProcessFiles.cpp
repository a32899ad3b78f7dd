#include "freedesktop/ProcessFiles.h"

#include <filesystem>
#include <fstream>
#include <string_view>

namespace freedesktop {
namespace {

std::string baseName(std::string_view path)
{
    return std::string(path.substr(path.rfind('/') + 1));
}

bool isInterpreter(std::string_view program)
{
    for (const std::string_view name : { "python", "perl", "ruby", "bash", "sh", "dash", "gjs", "node", "java" }) {
        if (program.starts_with(name) && program.find_first_not_of("0123456789.", name.size()) == program.npos)
            return true;
    }
    return false;
}

/// The first argument that is no option.
std::string scriptOf(const std::string& processFolder)
{
    const std::string arguments = contentsOf(processFolder + "/cmdline");
    std::size_t at = arguments.find('\0');
    while (at != arguments.npos && at + 1 < arguments.size()) {
        const std::string_view argument = arguments.c_str() + at + 1;
        if (!argument.starts_with('-'))
            return baseName(argument);
        at = arguments.find('\0', at + 1);
    }
    return {};
}

}

std::string contentsOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text;
    // Not by the size that the file system tells: that of a process's files is 0.
    for (char part[16384]; file.read(part, sizeof part), file.gcount() > 0;)
        text.append(part, static_cast<std::size_t>(file.gcount()));
    return text;
}

std::string programOf(pid_t pid)
{
    if (pid <= 0)
        return {};
    const std::string folder = "/proc/" + std::to_string(pid);
    std::error_code error;
    const std::string program = baseName(std::filesystem::read_symlink(folder + "/exe", error).string());
    if (!isInterpreter(program))
        return program;
    const std::string script = scriptOf(folder);
    return script.empty() ? program : script;
}

}
