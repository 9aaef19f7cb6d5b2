#pragma once

#include <string>

#include "terminal/progress_style.h"

namespace orv::cli {

/// The characters that fit on a line of standard error without wrapping.
int terminalWidth();

/// The style that is meant: Bar on a terminal and Lines elsewhere for Automatic.
ProgressStyle styleFor(ProgressStyle wanted);

/// A time in words without parts of a second: "4 s", "3 min 05 s".
std::string wholeSeconds(double seconds);

/// A text as JSON has it; bytes that are no UTF-8 are replaced by U+FFFD.
std::string jsonQuoted(const std::string& text);

}  // namespace orv::cli
