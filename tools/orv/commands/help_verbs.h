#pragma once

#include "options/verb.h"

namespace orv::cli {

/// `orv help [VERB|TOPIC] [--all] [--man]`.
Verb helpVerb();

/// `orv completions bash|zsh|fish`.
Verb completionsVerb();

/// Runs `orv help` and `orv --help`.
ExitCode helpCommand(const Verb& verb, const Words& words);

/// Prints the help of a verb, or of the last method of a chain, when --help or -h is among the
/// words; tells whether it was.
bool answerHelp(const Verb& verb, const Words& words);

}  // namespace orv::cli
