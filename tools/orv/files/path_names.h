#pragma once

#include <string>

namespace orv::cli {

/// The last part of a path: "c.jpg" of "a/b/c.jpg".
std::string fileNameOf(const std::string& path);

/// Whether a path leads to a folder, through links too.
bool isFolder(const std::string& path);

}  // namespace orv::cli
