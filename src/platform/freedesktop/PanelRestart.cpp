#include "freedesktop/PanelRestart.h"

#include "freedesktop/ProcessFiles.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace freedesktop {
namespace {

/// For a program to end, in milliseconds.
constexpr int patience = 700;

/// Waits for the end of its input, and up to two seconds for that of the process named first; then becomes the command.
constexpr const char* starter = R"(read -r _
for _ in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
    [ -e "/proc/$0/exe" ] || exec "$@" </dev/null
    sleep 0.1
done)";

std::vector<char*> pointersTo(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    for (std::string& each : strings)
        pointers.push_back(each.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// In a session of its own, so that nothing that ends ours ends it. The end of its input that is to be closed; negative
/// when it can't be started.
int startWaiting(pid_t pid)
{
    const std::string folder = "/proc/" + std::to_string(pid);
    std::vector<std::string> command { "sh", "-c", starter, std::to_string(pid) };
    for (std::string& argument : stringsOf(folder + "/cmdline"))
        command.push_back(std::move(argument));
    std::vector<std::string> environment = stringsOf(folder + "/environ");
    int ends[2];
    if (command.size() == 4 || ::pipe2(ends, O_CLOEXEC) != 0)
        return -1;
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, ends[0], STDIN_FILENO);
    for (const int output : { STDOUT_FILENO, STDERR_FILENO })
        ::posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t waiting = 0;
    const int error = ::posix_spawn(
        &waiting, "/bin/sh", &files, &attributes, pointersTo(command).data(), pointersTo(environment).data());
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    ::close(ends[0]);
    if (error == 0)
        return ends[1];
    ::close(ends[1]);
    return -1;
}

}

PanelRestart::PanelRestart(const std::string& program)
{
    const pid_t pid = processOf(program);
    if (pid == 0)
        return;
    hasEnded_ = false;
    const int process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    held_ = process < 0 ? -1 : startWaiting(pid);
    if (held_ >= 0 && ::kill(pid, SIGTERM) == 0) {
        pollfd end { process, POLLIN, 0 };
        hasEnded_ = ::poll(&end, 1, patience) == 1;
    }
    if (process >= 0)
        ::close(process);
}

PanelRestart::~PanelRestart()
{
    if (held_ >= 0)
        ::close(held_);
}

}
