#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "options/verb.h"

namespace orv::cli {

/// `orv solve`. The parameters of the system are those of `orv restore`.
Verb solveVerb();

/// Reads "all", or names and numbers of solvers with commas between, whatever their case.
///
/// Shapes:  `ids` is rising and without repeats; `named` tells that it wasn't "all".
/// Fails:   with one line that begins with "--solvers: "; an empty text means success.
std::string readSolvers(std::string_view text, std::vector<int>& ids, bool& named);

}  // namespace orv::cli
