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
    std::string second;  ///< the second picture of methods that take two
    std::string output;  ///< empty when none is named, where that is allowed
    /// Texts that were given, with the names of their options.
    std::vector<std::pair<std::string_view, std::string>> texts;
    /// Parameters that were given, in the order of the method's description, with their texts.
    std::vector<std::pair<std::string_view, std::string>> values;
};

/// An option whose value is a text that its verb reads.
struct TextOption {
    std::string_view name;
    std::string_view placeholder;
    std::string_view expected;  ///< what it takes, for messages
    std::string_view help;      ///< one line
};

/// What a verb takes.
struct Syntax {
    std::string_view verb;
    bool json = false;               ///< --json
    std::string_view picture;        ///< the word for the picture; empty: no files at all
    std::string_view secondPicture;  ///< the word for a second picture; empty: there is none
    std::span<const Parameter> parameters;
    std::span<const TextOption> texts = {};
    /// What -o takes, for messages, where it names the file to write, if any, in place of a word
    /// of its own; empty for the other verbs.
    std::string_view outputExpected = {};

    /// Whether the verb reads and writes files, and so takes --force and --quiet.
    bool files() const { return !picture.empty(); }
    /// Whether -o names the file to write.
    bool outputByOption() const { return !outputExpected.empty(); }
};

/// The words for the files, "IN OUT" or "SOURCE STYLE OUT".
std::string fileWords(std::string_view picture, std::string_view secondPicture);

/// The words for the files of a verb, "IN" alone where -o names the file to write.
std::string fileWords(const Syntax& syntax);

/// Reads what follows the verb. Values of parameters aren't checked here.
///
/// Fails:   with one line; an empty text means success.
std::string readCommandLine(const Syntax& syntax, int argc, const char* const* argv,
                            CommandLine& line);

}  // namespace orv::cli
