#pragma once

#include <string>

#include "compare/comparison.h"
#include "methods/json_text.h"

namespace orv::cli {

/// Adds all that is told about a comparison to an open object; docs/compare.md lists the names.
void addComparison(JsonText& json, const Comparison& comparison);

/// A comparison as JSON.
std::string comparisonJson(const Comparison& comparison);

/// A comparison as a table for a terminal of 60 columns and more.
std::string comparisonTable(const Comparison& comparison);

/// "31.42 dB", or "infinite" when nothing differs.
std::string psnrText(const DifferenceFigures& figures);

/// Four digits after the point, or "none".
std::string ssimText(double ssim);

/// A mean or a maximum in grey levels: "4.21", "63".
std::string levelText(double levels);

/// "92.1 %"; what is not quite none or all never reads so.
std::string shareText(double share);

}  // namespace orv::cli
