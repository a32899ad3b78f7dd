#include "freedesktop/ProcessFiles.h"

#include "base/PreferenceFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
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

/// ":0.0" is the first screen of ":0".
std::string displayOf(std::string_view variable)
{
    return std::string(variable.substr(0, variable.find('.', variable.rfind(':'))));
}

bool isOnOurDisplay(const std::string& processFolder)
{
    constexpr std::string_view name = "DISPLAY=";
    const char* ours = std::getenv("DISPLAY");
    for (const std::string& variable : stringsOf(processFolder + "/environ"))
        if (ours && variable.starts_with(name))
            return displayOf(variable.substr(name.size())) == displayOf(ours);
    return false;
}

}

std::string contentsOf(const std::string& path)
{
    return readFile(path).value_or("");
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

std::vector<std::string> stringsOf(const std::string& path)
{
    std::vector<std::string> strings;
    const std::string bytes = contentsOf(path);
    for (std::size_t start = 0; start < bytes.size(); start += strings.back().size() + 1)
        strings.emplace_back(bytes.c_str() + start);
    return strings;
}

pid_t processOf(const std::string& program)
{
    std::error_code error;
    for (const auto& process : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = process.path().filename().string();
        struct stat status { };
        pid_t pid = 0;
        std::from_chars(name.data(), name.data() + name.size(), pid);
        if (pid > 0 && ::stat(process.path().c_str(), &status) == 0 && status.st_uid == ::getuid()
            && programOf(pid) == program && isOnOurDisplay(process.path().string()))
            return pid;
    }
    return 0;
}

}
