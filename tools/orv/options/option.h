#pragma once

#include <span>
#include <string_view>

namespace orv::cli {

/// How an option takes its value.
enum class OptionKind {
    Flag,   ///< it takes none
    Value,  ///< the next word, or what follows '='
    Maybe,  ///< what follows '=', or `bareValue` without it
};

/// What a value is, for completion.
enum class ValueKind { Other, File, Folder, Words };

/// An option of the tool that isn't a parameter of a method, told once for parsing, messages,
/// help, manual and completion.
struct Option {
    std::string_view name;  ///< without dashes
    char letter;            ///< its short form, or '\0'
    OptionKind kind;
    std::string_view placeholder;  ///< what stands for the value; empty for a flag
    std::string_view expected;     ///< what it takes, for messages; empty for a flag
    std::string_view help;         ///< one sentence
    ValueKind valueKind = ValueKind::Other;
    std::string_view words = {};      ///< the values to choose from, with spaces between
    std::string_view bareValue = {};  ///< the value of a Maybe without '='
};

/// Options that stand under one heading.
struct OptionGroup {
    std::string_view title;
    std::span<const Option> options;
};

}  // namespace orv::cli
