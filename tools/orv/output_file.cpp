#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "interruption.h"

namespace orv::cli {

namespace {

std::string systemError(const std::string& path, int error) {
    return path +
           ": can't be written: " + (error == ENOENT ? "no such folder" : std::strerror(error));
}

mode_t usualMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::~OutputFile() {
    remove();
}

void OutputFile::remove() {
    if (temporary_.empty()) {
        return;
    }
    const InterruptionPause pause;
    unlink(temporary_.c_str());
    setUnfinishedFile("");
    temporary_.clear();
}

std::string OutputFile::open(const std::string& path, bool overwrite) {
    path_ = path;
    target_ = path;
    mode_t mode = usualMode();
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            return path + ": is a folder; name a file in it";
        }
        if (!S_ISREG(status.st_mode)) {
            return path + ": is no regular file";
        }
        if (!overwrite) {
            return path + ": exists already; --force overwrites it";
        }
        if (access(path.c_str(), W_OK) != 0) {
            return systemError(path, errno);
        }
        mode = status.st_mode & 0777;
        std::array<char, PATH_MAX> resolved{};
        if (realpath(path.c_str(), resolved.data()) != nullptr) {
            target_ = resolved.data();
        }
    }

    const std::size_t slash = target_.find_last_of('/');
    std::string name =
        (slash == std::string::npos ? "" : target_.substr(0, slash + 1)) + ".orv-XXXXXX";
    if (name.size() >= PATH_MAX) {
        return systemError(path, ENAMETOOLONG);
    }
    const InterruptionPause pause;
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        return systemError(path, errno);
    }
    fchmod(descriptor, mode);
    close(descriptor);
    setUnfinishedFile(name);
    temporary_ = name;
    return {};
}

std::string OutputFile::commit() {
    const InterruptionPause pause;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        const std::string error = systemError(path_, errno);
        remove();
        return error;
    }
    setUnfinishedFile("");
    setResultWritten();
    temporary_.clear();
    return {};
}

}  // namespace orv::cli
