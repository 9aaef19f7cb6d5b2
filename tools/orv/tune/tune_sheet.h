#pragma once

#include <string>

#include "tune/tune_run.h"

namespace orv::cli {

/// The labelled sheet: the original first, then a crop of each result, at 100 percent.
Picture drawSheet(const TuneSheet& sheet);

/// Pixels of the sheet of so many cells, before anything is worked out.
double sheetPixels(const TuneSheet& sheet, int cropWidth, int cropHeight);

/// What was run and measured as JSON text; see docs/tune.md.
std::string tuneAsJson(const TuneSheet& sheet, const std::string& output);

/// "tau 2, contrast 10"
std::string valuesText(const TuneSheet& sheet, const TuneCell& cell);

}  // namespace orv::cli
