#pragma once

#include <string>

#include "options/command_line.h"
#include "tune/tune_run.h"

namespace orv::cli {

/// What the command line of `orv tune` asks for.
struct TuneRequest {
    const Verb* method = nullptr;  ///< the one that is tuned
    TuneSheet sheet;               ///< with its cells, not run yet
    CropOrder crop;
    std::string output;
    JobOptions common;
    bool json = false;
};

/// Reads what follows the name of the method, which the request tells already.
///
/// Values go through the command line of the method itself, so that they mean and refuse the
/// same.
///
/// Fails:   with one line; an empty text means success.
std::string readTuneRequest(const Verb& verb, const CommandLine& line, TuneRequest& request);

}  // namespace orv::cli
