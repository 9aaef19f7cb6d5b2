#include "files/path_names.h"

#include "system/file_system.h"

namespace orv::cli {

std::string fileNameOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

bool isFolder(const std::string& path) {
    FileState state;
    return readState(path, state) && state.kind == FileKind::Folder;
}

}  // namespace orv::cli
