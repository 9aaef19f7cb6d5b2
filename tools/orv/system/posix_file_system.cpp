#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

#include "system/file_system.h"

namespace orv::cli {

namespace {

FileKind kindOf(mode_t mode) {
    return S_ISREG(mode)    ? FileKind::Regular
           : S_ISDIR(mode)  ? FileKind::Folder
           : S_ISLNK(mode)  ? FileKind::Link
           : S_ISFIFO(mode) ? FileKind::Pipe
                            : FileKind::Other;
}

long nanoseconds(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec.tv_nsec;
#else
    return status.st_mtim.tv_nsec;
#endif
}

FileState stateOf(const struct stat& status) {
    FileState state;
    state.kind = kindOf(status.st_mode);
    state.bytes = static_cast<double>(status.st_size);
    state.seconds = status.st_mtime;
    state.nanoseconds = nanoseconds(status);
    state.mode = status.st_mode & 0777;
    state.identity = {static_cast<std::uint64_t>(status.st_dev),
                      static_cast<std::uint64_t>(status.st_ino)};
    return state;
}

}  // namespace

bool readState(const std::string& path, FileState& state) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return false;
    }
    state = stateOf(status);
    return true;
}

bool readLinkState(const std::string& path, FileState& state) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return false;
    }
    state = stateOf(status);
    return true;
}

std::FILE* openFile(const std::string& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

bool removeFile(const std::string& path) {
    return unlink(path.c_str()) == 0;
}

bool makeFolder(const std::string& path) {
    return mkdir(path.c_str(), 0777) == 0;
}

bool removeFolder(const std::string& path) {
    return rmdir(path.c_str()) == 0;
}

bool replaceFile(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

bool renameToFree(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    // Some file systems have no second names; there a gap remains between look and rename.
    struct stat status {};
    if (lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

bool isWritable(const std::string& path) {
    return access(path.c_str(), W_OK) == 0;
}

void setPermissions(const std::string& path, unsigned mode) {
    chmod(path.c_str(), static_cast<mode_t>(mode));
}

unsigned usualPermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~static_cast<unsigned>(mask);
}

std::string makeTemporaryFile(const std::string& folder, unsigned mode) {
    std::string name = folder + ".orv-XXXXXX";
    if (name.size() >= PATH_MAX) {
        errno = ENAMETOOLONG;
        return {};
    }
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        return {};
    }
    fchmod(descriptor, static_cast<mode_t>(mode));
    close(descriptor);
    return name;
}

std::string resolvedPath(const std::string& path) {
    std::array<char, PATH_MAX> resolved{};
    return realpath(path.c_str(), resolved.data()) == nullptr ? std::string() : resolved.data();
}

std::string foldedPath(const std::string& path) {
    return path;
}

std::string rootOf(const std::string& path) {
    return !path.empty() && path[0] == '/' ? "/" : "";
}

bool listFolder(const std::string& folder, std::vector<std::string>& names) {
    const auto close = [](DIR* stream) { closedir(stream); };
    const std::unique_ptr<DIR, decltype(close)> stream(
        opendir(folder.empty() ? "." : folder.c_str()), close);
    if (stream == nullptr) {
        return false;
    }
    while (const dirent* const entry = readdir(stream.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return true;
}

bool fitsPattern(const std::string& pattern, const std::string& name, bool anyCase) {
    return fnmatch(pattern.c_str(), name.c_str(), FNM_PERIOD | (anyCase ? FNM_CASEFOLD : 0)) ==
           0;
}

}  // namespace orv::cli
