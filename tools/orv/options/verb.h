#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "exit_code.h"
#include "methods/method.h"
#include "options/option.h"

namespace orv::cli {

/// The words of a command line, after the verb or around it.
using Words = std::vector<std::string>;

/// What a verb of the tool is called, takes and does, told once for parsing, help, manual and
/// completion.
struct Verb {
    std::string name;
    std::string summary;  ///< one line
    std::string words;    ///< what its words stand for: "IN... [OUT]"
    std::vector<const OptionGroup*> groups;
    std::vector<Parameter> parameters = {};  ///< those of a method, after its automation
    std::string parametersTitle = "Method";
    const Method* method = nullptr;  ///< null for the verbs that aren't methods
    std::string about = {};          ///< paragraphs under the summary
    std::string notes = {};          ///< paragraphs at the end: what people trip over
    std::string example = {};        ///< a command with what it does
    /// Runs the verb on the words that follow it.
    ExitCode (*run)(const Verb& verb, const Words& words) = nullptr;

    /// The option of a name without dashes, or null.
    const Option* option(std::string_view optionName) const;
    /// The parameter of a name, or null.
    const Parameter* parameter(std::string_view parameterName) const;
};

/// All verbs in the order of help: methods first.
std::span<const Verb> verbTable();

/// The verb of a name, or null.
const Verb* findVerb(std::string_view name);

/// ", did you mean 'x'?" among the verbs, or an empty text.
std::string didYouMeanVerb(std::string_view word);

}  // namespace orv::cli
