#include "embedded/SessionLock.h"

#include <fcntl.h>
#include <unistd.h>

namespace embedded {

SessionLock::SessionLock(const std::string& folder)
    : file_(::open((folder + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    struct flock lock { };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    // The other may end between the two questions; then the lock is to be had after all.
    while (file_ >= 0 && !other_ && ::fcntl(file_, F_SETLK, &lock) != 0) {
        struct flock holder = lock;
        if (::fcntl(file_, F_GETLK, &holder) != 0)
            return;
        if (holder.l_type != F_UNLCK)
            other_ = holder.l_pid;
    }
}

SessionLock::~SessionLock()
{
    if (file_ >= 0)
        ::close(file_);
}

}
