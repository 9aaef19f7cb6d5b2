#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "methods/arguments.h"
#include "options/verb.h"

namespace orv::cli {

/// What follows a verb on the command line.
struct CommandLine {
    Words words;  ///< those that are no options
    /// Options that were given, by their long names, with their texts; a flag has "on".
    std::vector<std::pair<std::string, std::string>> options;
    /// Parameters that were given, in the order of the description, with their texts.
    std::vector<std::pair<std::string, std::string>> parameters;

    /// Whether an option was given.
    bool given(std::string_view option) const;
    /// The text of an option, or an empty one.
    std::string text(std::string_view option) const;
};

/// Reads what follows the verb. Values of options and parameters aren't checked here, but that
/// there is one.
///
/// Fails:   with one line; an empty text means success.
std::string readCommandLine(const Verb& verb, const Words& words, CommandLine& line);

/// Sets the parameters that were given.
///
/// Fails:   with one line; an empty text means success.
std::string setArguments(const CommandLine& line, Arguments& arguments);

/// "VERB: WHAT is missing (usage: orv VERB WORDS [options])"
std::string missingWord(const Verb& verb, std::string_view what);

/// "VERB: 'WORD' is one word too many (usage: ...)", and that -o names the output where it does.
std::string wordTooMany(const Verb& verb, std::string_view word);

}  // namespace orv::cli
