#pragma once

#include <string>

#include "batch/batch_plan.h"

namespace orv::cli {

/// "187 done, 8 skipped, 5 failed"; what there is none of is left out, but for those done.
std::string countsText(const BatchPlan& plan);

/// What a batch tells at its end about failures: nothing when there are none. Longer batches
/// list them again, the first 20 of them; `list` is the file with all.
std::string failuresText(const BatchPlan& plan, const std::string& list);

}  // namespace orv::cli
