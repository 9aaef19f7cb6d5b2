#pragma once

#include <string>
#include <vector>

#include "options/verb.h"

namespace orv::cli {

/// An option or parameter of a verb as completions need it.
struct CompletionEntry {
    std::string name;  ///< without dashes
    char letter = '\0';
    OptionKind kind = OptionKind::Flag;
    ValueKind valueKind = ValueKind::Other;
    std::string placeholder;
    std::vector<std::string> values;  ///< to choose from
    std::string help;                 ///< a short clause
};

/// All options and parameters of a verb; one that is both comes once.
std::vector<CompletionEntry> completionEntries(const Verb& verb);

/// What the first word of a verb is chosen from; empty for files and for nothing.
std::vector<std::string> firstWords(const Verb& verb);

/// Whether the words of a verb are files.
bool takesFiles(const Verb& verb);

/// The verbs that are methods, which may follow a comma.
std::vector<std::string> methodNames();

/// The words with `separator` between, each after `escape`.
std::string joinedWords(const std::vector<std::string>& words, std::string_view separator,
                        std::string (*escape)(const std::string&));

/// A text with a backslash before each character of `special`.
std::string escaped(std::string_view text, std::string_view special);

}  // namespace orv::cli
