#pragma once

#include <string>
#include <vector>

#include "options/command_line.h"
#include "pipeline/job.h"

namespace orv::cli {

/// A command line with one method or several, "restore in.jpg , shock --iterations 6 -o out.jpg".
struct Chain {
    std::vector<Step> steps;
    CommandLine line;                ///< words of the first part, options of all parts
    const Verb* help = nullptr;      ///< whose help is asked for, or null
    std::vector<CommandLine> parts;  ///< each part as it was read
};

/// Reads the words that follow the first verb.
///
/// Shapes:  `verb` is a method, perhaps with more options than its own; the parts after a comma
///          take the options of their methods and of files too.
///          A `batch` has options of its own, which every part takes; its words are all
///          pictures, so that a second picture is named by --with alone.
/// Fails:   with one line; an empty text means success.
std::string readChain(const Verb& verb, const Words& words, Chain& chain,
                      const OptionGroup* batch = nullptr);

}  // namespace orv::cli
