/* Preloaded into a program and all that it runs: at the Nth call that changes a file, starts a program or has waited for
   one, counted over all of them, the whole process group is killed, or with CRASH_ALONE just the process that made the
   call. The count is in the file CRASH_COUNT, of 4 bytes; N is CRASH_AT, 0 for never. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

static int *count;

static void point(void)
{
    if (!count) {
        const char *name = getenv("CRASH_COUNT");
        int (*real_open)(const char *, int, ...) = dlsym(RTLD_NEXT, "open");
        int file = name ? real_open(name, O_RDWR | O_CLOEXEC) : -1;
        void *shared = file < 0 ? MAP_FAILED : mmap(NULL, sizeof *count, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (shared == MAP_FAILED)
            return;
        count = shared;
        close(file);
    }
    const char *at = getenv("CRASH_AT");
    if (__atomic_add_fetch(count, 1, __ATOMIC_SEQ_CST) == (at ? atoi(at) : 0))
        kill(getenv("CRASH_ALONE") ? getpid() : 0, SIGKILL);
}

static int is_file(int file)
{
    struct stat status;
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

#define NEXT(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))
#define WRAPPED(type, name, parameters, arguments, condition)                                                             \
    type name parameters                                                                                                   \
    {                                                                                                                      \
        if (condition)                                                                                                     \
            point();                                                                                                       \
        return NEXT(name) arguments;                                                                                       \
    }

#define OPEN(name, parameters, arguments)                                                                                 \
    int name parameters                                                                                                    \
    {                                                                                                                      \
        va_list rest;                                                                                                      \
        va_start(rest, flags);                                                                                             \
        mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;                                            \
        va_end(rest);                                                                                                      \
        if (flags & (O_CREAT | O_TRUNC))                                                                                   \
            point();                                                                                                       \
        return NEXT(name) arguments;                                                                                       \
    }

OPEN(open, (const char *path, int flags, ...), (path, flags, mode))
OPEN(open64, (const char *path, int flags, ...), (path, flags, mode))
OPEN(openat, (int folder, const char *path, int flags, ...), (folder, path, flags, mode))
OPEN(openat64, (int folder, const char *path, int flags, ...), (folder, path, flags, mode))
WRAPPED(ssize_t, write, (int file, const void *bytes, size_t size), (file, bytes, size), is_file(file))
WRAPPED(int, rename, (const char *from, const char *to), (from, to), 1)
WRAPPED(int, renameat, (int a, const char *from, int b, const char *to), (a, from, b, to), 1)
WRAPPED(int, unlink, (const char *path), (path), 1)
WRAPPED(int, unlinkat, (int folder, const char *path, int flags), (folder, path, flags), 1)
WRAPPED(int, remove, (const char *path), (path), 1)
WRAPPED(int, mkdir, (const char *path, mode_t mode), (path, mode), 1)
WRAPPED(int, chmod, (const char *path, mode_t mode), (path, mode), 1)
WRAPPED(int, fchmodat, (int folder, const char *path, mode_t mode, int flags), (folder, path, mode, flags), 1)
WRAPPED(int, fsync, (int file), (file), 1)
WRAPPED(int, link, (const char *from, const char *to), (from, to), 1)
WRAPPED(FILE *, fopen, (const char *path, const char *mode), (path, mode), mode[0] != 'r')
WRAPPED(FILE *, fopen64, (const char *path, const char *mode), (path, mode), mode[0] != 'r')
WRAPPED(int, posix_spawn,
    (pid_t *pid, const char *path, const posix_spawn_file_actions_t *files, const posix_spawnattr_t *attributes,
        char *const arguments[], char *const environment[]),
    (pid, path, files, attributes, arguments, environment), 1)

pid_t waitpid(pid_t pid, int *status, int options)
{
    pid_t ended = NEXT(waitpid)(pid, status, options);
    if (ended > 0)
        point();
    return ended;
}
