#include "batch/file_stamp.h"

#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <ctime>

namespace orv::cli {

namespace {

long nanoseconds(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec.tv_nsec;
#else
    return status.st_mtim.tv_nsec;
#endif
}

}  // namespace

bool readStamp(const std::string& path, FileStamp& stamp) {
    struct stat status {};
    struct tm time {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        gmtime_r(&status.st_mtime, &time) == nullptr) {
        return false;
    }
    std::array<char, 40> day{};
    std::array<char, 60> text{};
    std::strftime(day.data(), day.size(), "%Y-%m-%dT%H:%M:%S", &time);
    std::snprintf(text.data(), text.size(), "%s.%09ldZ", day.data(), nanoseconds(status));
    stamp.bytes = static_cast<double>(status.st_size);
    stamp.modified = text.data();
    return true;
}

}  // namespace orv::cli
