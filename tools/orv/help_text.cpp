#include "help_text.h"

#include <algorithm>
#include <cstddef>

#include "image_file.h"

namespace orv::cli {

namespace {

constexpr std::size_t kColumn = 32;
constexpr std::size_t kWidth = 80;
/// Stands for a space at which no line is broken.
constexpr char kJoin = '\x1f';
/// Longer lists of choices have a verb of their own.
constexpr std::size_t kShownChoices = 10;

/// "  left      right", with the right side wrapped under itself.
std::string row(const std::string& left, const std::string& right) {
    std::string text = "  " + left;
    if (text.size() + 2 > kColumn) {
        text += "\n" + std::string(kColumn, ' ');
    } else {
        text.resize(kColumn, ' ');
    }
    std::size_t at = kColumn;
    std::size_t from = 0;
    while (from < right.size()) {
        const std::size_t end = std::min(right.find(' ', from), right.size());
        const std::size_t length = end - from;
        if (at > kColumn && at + 1 + length > kWidth) {
            text += "\n" + std::string(kColumn, ' ');
            at = kColumn;
        } else if (at > kColumn) {
            text += ' ';
            ++at;
        }
        std::string word = right.substr(from, length);
        std::replace(word.begin(), word.end(), kJoin, ' ');
        text += word;
        at += length;
        from = end + 1;
    }
    return text + "\n";
}

std::string joined(std::string text) {
    std::replace(text.begin(), text.end(), ' ', kJoin);
    return text;
}

std::string range(const Parameter& parameter) {
    switch (parameter.kind) {
        case ParameterKind::Flag:
            return {};
        case ParameterKind::Choice:
            return " " + joined("[default: " + defaultText(parameter) + "]");
        case ParameterKind::Real:
        case ParameterKind::Integer:
            break;
    }
    return "; " + joined(numberText(parameter.from) + " to " + numberText(parameter.to)) + " " +
           joined("[default: " + defaultText(parameter) + "]");
}

std::string choiceRows(const Parameter& parameter) {
    std::string text;
    const std::span<const Choice> choices = parameter.choices();
    if (choices.size() > kShownChoices) {
        return text;
    }
    for (const Choice& candidate : choices) {
        text += row("    " + std::string(candidate.name), std::string(candidate.help));
    }
    return text;
}

std::string parameterRows(std::span<const Parameter> parameters) {
    std::string text;
    for (const Parameter& parameter : parameters) {
        const std::string value = placeholder(parameter);
        text += row("--" + std::string(parameter.name) + (value.empty() ? "" : " " + value),
                    std::string(parameter.help) + range(parameter));
        if (parameter.kind == ParameterKind::Choice) {
            text += choiceRows(parameter);
        }
    }
    return text;
}

constexpr std::string_view kExitCodes =
    "Exit codes:\n"
    "  0  done\n"
    "  1  some pictures of several failed\n"
    "  2  the command line is wrong\n"
    "  3  a file can't be read\n"
    "  4  a file can't be written\n"
    "  5  the method refused, or its result isn't finite\n"
    "  6  more memory is needed than may be used\n"
    "  130  interrupted\n";

/// A text in lines of at most kWidth characters.
std::string paragraphs(const std::string& text) {
    std::string result;
    std::size_t at = 0;
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = std::min(text.find_first_of(" \n", from), text.size());
        const std::size_t length = end - from;
        if (at > 0 && at + 1 + length > kWidth) {
            result += "\n";
            at = 0;
        } else if (at > 0) {
            result += ' ';
            ++at;
        }
        result += text.substr(from, length);
        at += length;
        if (end < text.size() && text[end] == '\n') {
            result += "\n";
            at = 0;
        }
        from = end + 1;
    }
    return result + "\n";
}

/// "-o, --output OUT"
std::string written(const Option& option) {
    std::string text = "--" + std::string(option.name);
    if (option.letter != '\0') {
        text = "-" + std::string(1, option.letter) + ", " + text;
    }
    if (option.kind == OptionKind::Maybe) {
        return text + "[=" + std::string(option.placeholder) + "]";
    }
    return option.placeholder.empty() ? text : text + " " + std::string(option.placeholder);
}

/// A help text whose default stays on one line.
std::string withDefaultJoined(std::string_view help) {
    const std::size_t from = std::min(help.find("[default:"), help.size());
    return std::string(help.substr(0, from)) + joined(std::string(help.substr(from)));
}

std::string groupRows(const OptionGroup& group) {
    std::string text = "\n" + std::string(group.title) + ":\n";
    for (const Option& option : group.options) {
        text += row(written(option), withDefaultJoined(option.help));
    }
    return text;
}

std::string usageOf(const Verb& verb) {
    return verb.name + (verb.words.empty() ? "" : " " + verb.words);
}

}  // namespace

std::string generalHelp() {
    std::string text =
        "orv restores and enhances pictures by numerical methods\n"
        "\n"
        "Usage: orv VERB [arguments]\n"
        "\n"
        "Verbs:\n";
    for (const Verb& verb : verbTable()) {
        text += row(usageOf(verb), verb.summary);
    }
    text +=
        "\n"
        "Options:\n";
    text += row("-h, --help", "show this; " + joined("orv VERB --help") + " or " +
                                  joined("orv help VERB") + " tells about a verb");
    text += row("--version", "show the version");
    text += "\nPicture files: " + writableExtensions() + "\n\n" + std::string(kExitCodes);
    return text;
}

std::string verbHelp(const Verb& verb) {
    std::string text = verb.summary + "\n";
    if (!verb.about.empty()) {
        text += "\n" + paragraphs(verb.about);
    }
    text += "\nUsage: orv " + usageOf(verb) + " [options]\n";
    if (!verb.parameters.empty()) {
        text += "\n" + verb.parametersTitle + ":\n" + parameterRows(verb.parameters);
    }
    for (const OptionGroup* const group : verb.groups) {
        text += groupRows(*group);
    }
    if (!verb.notes.empty()) {
        text += "\n" + paragraphs(verb.notes);
    }
    if (!verb.example.empty()) {
        text += "\nExample: " + verb.example + "\n";
    }
    if (verb.method != nullptr) {
        text += "\nLiterature:\n";
        for (const std::string_view line : verb.method->literature) {
            text += "  " + std::string(line) + "\n";
        }
    }
    return text;
}

std::string versionText() {
    std::string text = "orv " ORV_VERSION;
    if (haveVips()) {
        text += " (" + vipsVersion() + ")";
    }
    return text + "\n";
}

}  // namespace orv::cli
