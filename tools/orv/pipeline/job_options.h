#pragma once

#include <string>
#include <vector>

#include "options/command_line.h"
#include "pipeline/job.h"

namespace orv::cli {

/// Reads the options of a command line that say how pictures are read, written and reported.
///
/// Fails:   with one line that begins with the option; an empty text means success.
std::string readJobOptions(const CommandLine& line, JobOptions& options);

/// Sets what was given for a step: parameters of its method, and what automation takes.
///
/// Fails:   with one line that begins with the option; an empty text means success.
std::string setParameters(const NamedTexts& given, Step& step);

/// The steps of a recipe.
///
/// Fails:   with one line; an empty text means success.
std::string stepsOf(const Recipe& recipe, std::vector<Step>& steps);

/// The options of files that a recipe tells, where the command line tells nothing else.
///
/// Fails:   with one line; an empty text means success.
std::string takeRecipeOptions(const Recipe& recipe, const CommandLine& line,
                              JobOptions& options);

/// What a user should know of a step before it runs, one line each.
std::vector<std::string> warningsOf(const Step& step);

}  // namespace orv::cli
