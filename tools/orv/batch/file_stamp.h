#pragma once

#include <string>

namespace orv::cli {

/// What tells a file from an earlier or later state of it without reading it.
struct FileStamp {
    double bytes = 0.0;
    std::string modified;  ///< "2026-03-01T17:05:09.120000000Z", to the nanosecond

    bool operator==(const FileStamp& other) const = default;
};

/// Reads the stamp of a file.
///
/// Fails:   false when there is no file, or it is no regular one.
bool readStamp(const std::string& path, FileStamp& stamp);

}  // namespace orv::cli
