#include "freedesktop/Tools.h"

#include "freedesktop/OwnPrograms.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <utility>

namespace freedesktop {
namespace {

using Clock = std::chrono::steady_clock;

/// How long a tool may take. Three that hang hold a start up for less than five seconds.
constexpr auto patience = std::chrono::milliseconds(1500);
constexpr auto rest = std::chrono::seconds(30);

std::string programFor(const std::string& path)
{
    constexpr std::pair<const char*, const char*> own[] = {
        { "/usr/bin/defaults", "vantry-defaults" },
        { "/usr/bin/killall", "vantry-killall" },
        { "/bin/launchctl", "vantry-launchctl" },
    };
    for (const auto& [name, program] : own)
        if (path == name)
            return besideOwnExecutable(program);
    return path;
}

class Process final : public host::RunningTool {
public:
    Process(pid_t pid, std::function<void()> onHanging)
        : pid_(pid)
        , onHanging_(std::move(onHanging))
    {
    }

    /// What isn't waited for is left to end by itself.
    ~Process() override = default;

    void wait() override
    {
        const int process = static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0));
        pollfd end { process, POLLIN, 0 };
        if (process >= 0 && ::poll(&end, 1, static_cast<int>(patience.count())) == 0) {
            ::kill(pid_, SIGKILL);
            onHanging_();
        }
        if (process >= 0)
            ::close(process);
        while (::waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) { }
    }

private:
    pid_t pid_;
    std::function<void()> onHanging_;
};

/// 0 and the process's number, else the error's.
std::pair<int, pid_t> spawn(const std::string& program, const host::Tools::Run& run)
{
    std::vector<char*> arguments { const_cast<char*>(program.c_str()) };
    for (const std::string& argument : run.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    if (run.isSilent)
        for (const int output : { STDOUT_FILENO, STDERR_FILENO })
            ::posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int error = ::posix_spawn(&pid, program.c_str(), &files, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&files);
    return { error, pid };
}

}

std::unique_ptr<host::RunningTool> Tools::launch(const Run& run, std::string& reason)
{
    const std::string program = programFor(run.path);
    const auto hanging = hanging_.find(program);
    if (hanging != hanging_.end() && Clock::now() < hanging->second) {
        reason = program + " doesn't answer";
        return nullptr;
    }
    const auto [error, pid] = spawn(program, run);
    if (error != 0) {
        reason = program + ": " + std::strerror(error);
        return nullptr;
    }
    return std::make_unique<Process>(pid, [this, program] { hanging_[program] = Clock::now() + rest; });
}

}
