#pragma once

#include <string>
#include <vector>

#include "batch/batch_order.h"
#include "batch/file_stamp.h"

namespace orv::cli {

/// How far a picture of a batch is.
enum class BatchStatus { Waiting, Running, Done, Skipped, Failed };

/// One picture of a batch.
struct BatchFile {
    std::string input;
    std::string output;
    std::string recipe;  ///< what tells how the output was made
    FileStamp stamp;     ///< of the input when the batch began
    BatchStatus status = BatchStatus::Waiting;
    std::string reason;    ///< why it failed, one line without the input's name
    bool refused = false;  ///< whether it failed for what stands at the place of its output
    std::vector<std::string> warnings;
    double seconds = 0.0;
    double bytes = 0.0;  ///< of the output
};

/// All pictures of a batch, in the order in which they start.
struct BatchPlan {
    std::vector<BatchFile> files;
    std::vector<std::string> notes;  ///< what was passed over, a line each

    int count(BatchStatus status) const;
};

/// Finds the pictures and the names of the results.
///
/// Pictures below the folder of the results are left out unless they were named themselves.
/// Where results exist already, all is refused without --resume and --force.
///
/// Fails:   with one line, before anything is written.
Failure planBatch(const BatchOrder& order, BatchPlan& plan);

/// Looks at results that exist, for --resume: what is finished is skipped, and what is anything
/// else fails, unless --force has it made again.
void settleFinished(const BatchOrder& order, BatchPlan& plan);

/// The path with its links and detours resolved, as far as it exists.
std::string realPlace(const std::string& path);

}  // namespace orv::cli
