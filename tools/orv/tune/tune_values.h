#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "methods/parameter.h"

namespace orv::cli {

/// The most cells of a sheet, the original left out.
inline constexpr std::size_t kMostCells = 64;

/// Reads the values of a parameter as a list with commas: single values as the parameter takes
/// them, and ranges of numbers.
///
///     5,10,20     these
///     1..8        four values from 1 to 8: 1, 2, 4, 8
///     1..8:2      1, 3, 5, 7
///
/// The four values of a range grow by a factor where the end is at least four times the start,
/// else by a step; they have three digits, and what comes twice counts once.
///
/// Shapes:  `values` are texts that the parameter takes, in their order.
/// Fails:   with one line that begins with "--name: ", for a single value the one that the
///          parameter itself gives. An empty text means success.
std::string readValues(const Parameter& parameter, std::string_view text,
                       std::vector<std::string>& values);

}  // namespace orv::cli
