#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "methods/parameter.h"

namespace orv::cli {

/// What follows a verb on the command line.
struct CommandLine {
    bool help = false;
    bool force = false;
    bool quiet = false;
    bool json = false;
    std::string input;
    std::string output;
    /// Parameters that were given, in the order of the method's description, with their texts.
    std::vector<std::pair<std::string_view, std::string>> values;
};

/// What a verb takes.
struct Syntax {
    std::string_view verb;
    bool files = false;  ///< IN and OUT, --force, --quiet
    bool json = false;   ///< --json
    std::span<const Parameter> parameters;
};

/// Reads what follows the verb. Values of parameters aren't checked here.
///
/// Fails:   with one line; an empty text means success.
std::string readCommandLine(const Syntax& syntax, int argc, const char* const* argv,
                            CommandLine& line);

}  // namespace orv::cli
