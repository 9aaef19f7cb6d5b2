#include "system/file_system.h"

#include <cerrno>
#include <cstddef>

namespace orv::cli {

bool leadsSomewhere(const std::string& path) {
    FileState state;
    return readState(path, state);
}

bool isTaken(const std::string& path) {
    FileState state;
    return readLinkState(path, state);
}

bool isRegularFile(const std::string& path) {
    FileState state;
    return readState(path, state) && state.kind == FileKind::Regular;
}

bool makeFolders(const std::string& path) {
    FileState state;
    if (readState(path, state)) {
        errno = ENOTDIR;
        return state.kind == FileKind::Folder;
    }
    const std::size_t slash = path.find_last_not_of('/') == std::string::npos
                                  ? std::string::npos
                                  : path.find_last_of('/', path.find_last_not_of('/'));
    if (slash != std::string::npos && slash > 0 && !makeFolders(path.substr(0, slash))) {
        return false;
    }
    // Another process may make it at the same time.
    return makeFolder(path) || errno == EEXIST;
}

void removeTree(const std::string& path) {
    FileState state;
    if (!readLinkState(path, state)) {
        return;
    }
    if (state.kind != FileKind::Folder) {
        removeFile(path);
        return;
    }
    std::vector<std::string> names;
    listFolder(path, names);
    for (const std::string& name : names) {
        removeTree(path + "/" + name);
    }
    removeFolder(path);
}

double fileBytes(const std::string& path) {
    FileState state;
    return readState(path, state) ? state.bytes : 0.0;
}

}  // namespace orv::cli
