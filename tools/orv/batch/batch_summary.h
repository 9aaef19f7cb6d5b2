#pragma once

#include <cstddef>
#include <string>

#include "batch/batch_plan.h"

namespace orv::cli {

/// Failures of batches beyond this size are listed at the end, and no more of them than this.
inline constexpr std::size_t kListedFailures = 20;

/// "187 done, 8 skipped, 5 failed"; what there is none of is left out, but for those done.
std::string countsText(const BatchPlan& plan);

/// What a batch tells at its end about failures: nothing when there are none. Longer batches
/// list the first of them; `list` is the file with all.
std::string failuresText(const BatchPlan& plan, const std::string& list);

}  // namespace orv::cli
