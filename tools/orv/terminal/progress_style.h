#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// How progress shows on standard error.
enum class ProgressStyle {
    Automatic,  ///< Bar on a terminal, Lines elsewhere
    Bar,        ///< one line that is kept up to date
    Lines,      ///< a line at each tenth of long work
    Json,       ///< a JSON object a line, for programs
    None,
};

/// The style of a word, "bar", "lines", "json" or "none"; false for any other.
bool readProgressStyle(std::string_view word, ProgressStyle& style);

}  // namespace orv::cli
