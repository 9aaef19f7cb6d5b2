#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "options/command_line.h"
#include "pipeline/job.h"
#include "pipeline/step_runner.h"

namespace orv::cli {

/// The pictures that a command reads, and where each goes.
struct FilePlan {
    std::vector<JobFiles> files;
    std::vector<std::string> notes;  ///< what was passed over, a line each
};

/// Finds the pictures that words name, and the names of the results.
///
/// With --output all words are pictures to read. Without it two words are IN and OUT, and one
/// or more than two are pictures to read, whose results go beside them as NAME.`suffix`.EXT.
///
/// Fails:   with Usage, Input or Output and one line.
Failure planFiles(const Verb& verb, const Words& words, const CommandLine& line,
                  const JobOptions& options, std::string_view suffix, FilePlan& plan);

/// Runs the steps on every picture of a plan, and sums up where there are several.
ExitCode runPlan(const FilePlan& plan, const std::vector<Step>& steps,
                 const JobOptions& options);

}  // namespace orv::cli
