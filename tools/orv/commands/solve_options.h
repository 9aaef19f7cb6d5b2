#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "commands/command_line.h"

namespace orv::cli {

/// The line of `orv solve` in the list of verbs.
inline constexpr std::string_view kSolveSummary =
    "compare the linear solvers on the system of a picture; -o writes a report";

/// What `orv solve` takes. The parameters of the system are those of `orv restore`.
///
/// Owns:    its parts live as long as the program.
Syntax solveSyntax();

/// Reads "all", or names and numbers of solvers with commas between, whatever their case.
///
/// Shapes:  `ids` is rising and without repeats; `named` tells that it wasn't "all".
/// Fails:   with one line that begins with "--solvers: "; an empty text means success.
std::string readSolvers(std::string_view text, std::vector<int>& ids, bool& named);

}  // namespace orv::cli
