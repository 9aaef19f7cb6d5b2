#pragma once

#include <string>

#include "batch/batch_plan.h"

namespace orv::cli {

/// What stands at the place of a result.
enum class Finished {
    Nothing,  ///< no file
    Whole,    ///< what this batch would make
    Other,    ///< anything else
};

/// Holds the file at the place of a result against the recipe that tells how it was made.
///
/// It is whole when it is the very file that the recipe was written with, the recipe was made
/// by the same request, and the input hasn't changed since: files are the same when size and
/// modification time are. Where it is something else, `reason` tells what, one line.
Finished finishedWork(const BatchFile& file, const std::string& request, std::string& reason);

/// Puts into a worker's recipe what finishedWork() looks for, and the name of the result.
///
/// `staged` is the result where the worker left it; it is renamed later, which changes neither
/// size nor time.
///
/// Fails:   with a reason; an empty text means success.
std::string completeRecipe(const std::string& recipePath, const std::string& request,
                           const BatchFile& file, const std::string& staged);

}  // namespace orv::cli
