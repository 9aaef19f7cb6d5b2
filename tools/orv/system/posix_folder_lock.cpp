#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "system/folder_lock.h"

namespace orv::cli {

bool FolderLock::take(const std::string& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close(descriptor);
        return false;
    }
    lock_ = descriptor;
    return true;
}

void FolderLock::release() {
    if (lock_ != kNone) {
        close(static_cast<int>(lock_));
        lock_ = kNone;
    }
}

}  // namespace orv::cli
