#pragma once

#include "exit_code.h"
#include "options/verb.h"

namespace orv::cli {

// What the verbs do. `words` follow the verb on the command line, here and below.

/// `orv METHOD IN... [OUT] [options] [, METHOD ...]`.
ExitCode methodCommand(const Verb& verb, const Words& words);

/// `orv run RECIPE IN... [options]` and `orv run --preset NAME IN...`.
ExitCode runCommand(const Verb& verb, const Words& words);

/// `orv compare BEFORE AFTER [-o FILE] [options]`.
ExitCode compareCommand(const Verb& verb, const Words& words);

/// `orv batch VERB IN... -o DIR [options]`.
ExitCode batchCommand(const Verb& verb, const Words& words);

/// `orv solve IN [-o REPORT] [options]`.
ExitCode solveCommand(const Verb& verb, const Words& words);

/// `orv methods [--json]`.
ExitCode methodsCommand(const Verb& verb, const Words& words);

/// `orv solvers [--json]`.
ExitCode solversCommand(const Verb& verb, const Words& words);

}  // namespace orv::cli
