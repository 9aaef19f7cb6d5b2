#pragma once

#include "options/option.h"

namespace orv::cli {

/// Where a picture goes and how it is written.
extern const OptionGroup kFileOptions;
/// The second picture, for the methods that take one.
extern const OptionGroup kSecondOptions;
/// What is written beside the picture: recipe and comparison.
extern const OptionGroup kRecordOptions;
/// --max-memory, --progress, --quiet, --help.
extern const OptionGroup kRunOptions;
/// --quiet, --progress and --help, for verbs that write a report or a sheet.
extern const OptionGroup kReportRunOptions;
/// --json and --help.
extern const OptionGroup kListingOptions;
/// --help alone.
extern const OptionGroup kHelpOptions;

}  // namespace orv::cli
