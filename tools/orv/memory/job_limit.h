#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"
#include "pipeline/job.h"
#include "pipeline/step_runner.h"

namespace orv::cli {

/// What forbids a job because of its memory, from the heads of its pictures.
///
/// Fails:   with Memory and what would fit, with Usage where --max-memory is no size. A second
///          picture that can't be read counts nothing here; reading it says why.
Failure memoryFailure(const std::string& name, const PictureHeader& header,
                      const std::vector<Step>& steps, const JobOptions& options);

}  // namespace orv::cli
