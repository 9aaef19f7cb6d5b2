#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orv::cli {

// The standard library takes plain text for that of the system's code page on Windows.

/// A path of the tool, which is UTF-8, as the standard library has it.
inline std::filesystem::path standardPath(std::string_view path) {
    return {std::u8string(path.begin(), path.end())};
}

/// The text of such a path, with '/' between its parts.
inline std::string pathText(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

}  // namespace orv::cli
