#include "files/path_names.h"

#include <sys/stat.h>

namespace orv::cli {

std::string fileNameOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace orv::cli
