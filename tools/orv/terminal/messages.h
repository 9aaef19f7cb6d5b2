#pragma once

#include <string>
#include <string_view>

#include "exit_code.h"

namespace orv::cli {

/// Writes "orv: text" as one line to standard error and gives the code back.
///
/// The text is made printable.
ExitCode fail(ExitCode code, std::string_view text);

/// Writes "orv: warning: text" as one line to standard error, made printable.
void warn(std::string_view text);

/// Writes text to standard output as it is.
void print(std::string_view text);

/// Text with control characters, which file names may hold, shown as '?'.
std::string printable(std::string_view text);

/// A number with one digit after the point.
std::string oneDecimal(double value);

/// A time in words: "0.31 s", "12 s", "3 min 05 s".
std::string durationText(double seconds);

/// A file size in words: "812 bytes", "35 KB", "12.3 MB".
std::string sizeText(double bytes);

}  // namespace orv::cli
