#pragma once

#include "exit_code.h"
#include "methods/method.h"

namespace orv::cli {

/// `orv METHOD IN OUT [options]`; argv[0] is the verb, here and below.
ExitCode methodCommand(const Method& method, int argc, const char* const* argv);

/// `orv solve IN [-o REPORT] [options]`.
ExitCode solveCommand(int argc, const char* const* argv);

/// `orv methods [--json]`.
ExitCode methodsCommand(int argc, const char* const* argv);

/// `orv solvers [--json]`.
ExitCode solversCommand(int argc, const char* const* argv);

}  // namespace orv::cli
