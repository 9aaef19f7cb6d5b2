#include "options/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstddef>

#include "methods/suggestion.h"

namespace orv::cli {

namespace {

/// More verbs than these aren't listed one by one.
constexpr std::size_t kListedVerbs = 3;

/// The options of a verb as the user writes them, for "did you mean".
std::vector<std::string> optionNames(const Verb& verb) {
    std::vector<std::string> names;
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            names.push_back("--" + std::string(option.name));
        }
    }
    for (const Parameter& parameter : verb.parameters) {
        names.push_back("--" + std::string(parameter.name));
    }
    return names;
}

/// "a", "a and b", "a, b and c".
std::string listed(const std::vector<std::string_view>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 == words.size() ? " and " : ", ";
        text += words[i];
    }
    return text;
}

/// Whether a verb has an option, written as "--name" or "-n".
bool hasOption(const Verb& verb, std::string_view written) {
    if (written.size() > 2 && written.substr(0, 2) == "--") {
        const std::string_view name = written.substr(2);
        return verb.option(name) != nullptr || verb.parameter(name) != nullptr;
    }
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            if (written.size() == 2 && option.letter == written[1]) {
                return true;
            }
        }
    }
    return false;
}

/// The other verbs that have an option, as "denoise", "methods and solvers" or "restore, denoise,
/// wavelet and others"; empty when none.
std::string verbsWith(const std::string& written) {
    std::vector<std::string_view> verbs;
    for (const Verb& verb : verbTable()) {
        if (hasOption(verb, written)) {
            verbs.push_back(verb.name);
        }
    }
    if (verbs.size() > kListedVerbs) {
        verbs.resize(kListedVerbs);
        verbs.push_back("others");
    }
    return listed(verbs);
}

std::string unexpectedOption(const Verb& verb, const std::string& word) {
    const std::string written = word.substr(0, word.find('='));
    const std::string others = verbsWith(written);
    if (!others.empty()) {
        return written + ": is an option of " + others + ", not of " + verb.name + " (orv " +
               verb.name + " --help lists all)";
    }
    const std::vector<std::string> names = optionNames(verb);
    const std::vector<std::string_view> views(names.begin(), names.end());
    return "unknown option '" + written + "'" + didYouMean(written, views) + " (orv " +
           verb.name + " --help lists all)";
}

bool looksLikeOption(std::string_view word) {
    return word.size() > 1 && word[0] == '-' &&
           (word[1] == '-' || std::isalpha(static_cast<unsigned char>(word[1])) != 0);
}

/// "--option: the value is missing (expected ...)"
std::string valueMissing(const std::string& option, std::string_view expected) {
    return option + ": the value is missing (expected " + std::string(expected) + ")";
}

/// What an option is written as: "--name", and "-n" where it has a letter.
std::string definition(const Option& option) {
    std::string text = "--" + std::string(option.name);
    if (option.letter != '\0') {
        text = "-" + std::string(1, option.letter) + "," + text;
    }
    return text;
}

bool isWrittenAs(const Option& option, std::string_view word) {
    return word == "--" + std::string(option.name) ||
           (option.letter != '\0' && word.size() == 2 && word[0] == '-' &&
            word[1] == option.letter);
}

/// Whether a text is one of the words that an option takes.
bool hasWord(const Option& option, std::string_view text) {
    const std::string words = " " + std::string(option.words) + " ";
    return words.find(" " + std::string(text) + " ") != std::string::npos;
}

/// What one word of the command line is to the verb.
struct Meaning {
    const Option* option = nullptr;
    const Parameter* parameter = nullptr;

    bool takesValue() const {
        return (option != nullptr && option->kind == OptionKind::Value) ||
               (parameter != nullptr && parameter->kind != ParameterKind::Flag);
    }
    bool takesValueOrMaybe() const {
        return takesValue() || (option != nullptr && option->kind == OptionKind::Maybe);
    }
    bool isFlag() const {
        return (option != nullptr && option->kind == OptionKind::Flag) ||
               (parameter != nullptr && parameter->kind == ParameterKind::Flag);
    }
    std::string longName() const {
        return "--" + std::string(option != nullptr ? option->name : parameter->name);
    }
    std::string expected() const {
        return option != nullptr ? std::string(option->expected) : expectation(*parameter);
    }
};

Meaning meaningOf(const Verb& verb, std::string_view word) {
    Meaning meaning;
    if (word.substr(0, 2) == "--") {
        meaning.parameter = verb.parameter(word.substr(2));
    }
    if (meaning.parameter != nullptr) {
        return meaning;
    }
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            if (isWrittenAs(option, word)) {
                meaning.option = &option;
            }
        }
    }
    return meaning;
}

/// Whether word `i` takes a value and none is there: nothing after '=', no next word, an option
/// as the next word, or an empty word where a name has to stand.
bool lacksValue(const Words& words, std::size_t i, const Meaning& meaning) {
    const std::size_t equals = words[i].find('=');
    if (equals != std::string::npos) {
        return meaning.takesValueOrMaybe() && equals + 1 == words[i].size();
    }
    return meaning.takesValue() && (i + 1 == words.size() || looksLikeOption(words[i + 1]) ||
                                    (words[i + 1].empty() && meaning.option != nullptr));
}

/// What the parser would let pass: a flag with a value, and an option whose value would be the
/// next option. Writes the value of a Maybe out, which the parser would take from the next word.
std::string checkWords(const Verb& verb, Words& words) {
    for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
        const std::string written = words[i].substr(0, words[i].find('='));
        const bool withValue = written.size() < words[i].size();
        const Meaning meaning = meaningOf(verb, written);
        if (withValue && written.substr(0, 2) == "--" && meaning.isFlag()) {
            return written + ": takes no value";
        }
        if (lacksValue(words, i, meaning)) {
            return valueMissing(meaning.longName(), meaning.expected());
        }
        if (!withValue && meaning.option != nullptr &&
            meaning.option->kind == OptionKind::Maybe) {
            const std::string_view choices = meaning.option->words;
            if (i + 1 < words.size() && !words[i + 1].empty() &&
                (" " + std::string(choices) + " ").find(" " + words[i + 1] + " ") !=
                    std::string::npos) {
                return written + ": write " + written + "=" + words[i + 1];
            }
            words[i] += "=" + std::string(meaning.option->bareValue);
        }
        if (!withValue && meaning.takesValue()) {
            ++i;
        }
    }
    return {};
}

/// The parser of a verb's options.
///
/// A parameter may have the name of an option, as --alpha of retinex has, if its values aren't
/// words of the option: the value then tells which one is meant.
class Parser {
  public:
    explicit Parser(const Verb& verb) : verb_(verb) {
        app_.set_help_flag();
        app_.allow_extras();
        // Else a path that begins with '/' would be an option on Windows.
        app_.allow_windows_style_options(false);
        app_.add_option("words", words_);
        for (const OptionGroup* const group : verb.groups) {
            for (const Option& option : group->options) {
                if (verb.parameter(option.name) == nullptr) {
                    add(definition(option), option.kind == OptionKind::Flag);
                }
            }
        }
        for (const Parameter& parameter : verb.parameters) {
            add("--" + std::string(parameter.name), parameter.kind == ParameterKind::Flag);
        }
    }

    std::string parse(Words words) {
        std::reverse(words.begin(), words.end());
        try {
            app_.parse(words);
        } catch (const CLI::ParseError& problem) {
            const std::string text = problem.what();
            return text.substr(0, text.find('\n'));
        }
        for (const std::string& word : app_.remaining()) {
            if (word.size() > 1 && word[0] == '-' && word != "--") {
                return unexpectedOption(verb_, word);
            }
        }
        return repeated();
    }

    void fill(CommandLine& line) const {
        line.words = words_;
        std::size_t i = 0;
        for (const OptionGroup* const group : verb_.groups) {
            for (const Option& option : group->options) {
                if (verb_.parameter(option.name) == nullptr) {
                    take(i++, option.name, line.options);
                }
            }
        }
        for (const Parameter& parameter : verb_.parameters) {
            const Option* const namesake = verb_.option(parameter.name);
            const bool isOption = namesake != nullptr && hasWord(*namesake, *values_[i]);
            take(i++, parameter.name, isOption ? line.options : line.parameters);
        }
    }

  private:
    void add(const std::string& name, bool isFlag) {
        values_.push_back(std::make_unique<std::string>("on"));
        entries_.push_back(isFlag ? app_.add_flag(name)
                                  : app_.add_option(name, *values_.back())->take_last());
    }

    std::string repeated() const {
        for (const CLI::Option* const entry : entries_) {
            if (entry->count() > 1) {
                return "--" + entry->get_lnames().front() + ": is given " +
                       std::to_string(entry->count()) + " times; give it once";
            }
        }
        return {};
    }

    void take(std::size_t i, std::string_view name,
              std::vector<std::pair<std::string, std::string>>& list) const {
        if (entries_[i]->count() > 0) {
            list.emplace_back(name, *values_[i]);
        }
    }

    const Verb& verb_;
    CLI::App app_;
    Words words_;
    std::vector<CLI::Option*> entries_;                 // options, then parameters
    std::vector<std::unique_ptr<std::string>> values_;  // their texts, which mustn't move
};

std::string usage(const Verb& verb) {
    return " (usage: orv " + verb.name + (verb.words.empty() ? "" : " " + verb.words) +
           " [options])";
}

}  // namespace

bool CommandLine::given(std::string_view option) const {
    return std::any_of(options.begin(), options.end(),
                       [&](const auto& entry) { return entry.first == option; });
}

std::string CommandLine::text(std::string_view option) const {
    for (const auto& [name, text] : options) {
        if (name == option) {
            return text;
        }
    }
    return {};
}

std::string readCommandLine(const Verb& verb, const Words& words, CommandLine& line) {
    Words checked = words;
    std::string error = checkWords(verb, checked);
    if (!error.empty()) {
        return error;
    }
    Parser parser(verb);
    error = parser.parse(std::move(checked));
    if (error.empty()) {
        parser.fill(line);
    }
    return error;
}

std::string setArguments(const CommandLine& line, Arguments& arguments) {
    for (const auto& [name, text] : line.parameters) {
        std::string error = arguments.set(name, text);
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

std::string missingWord(const Verb& verb, std::string_view what) {
    return verb.name + ": " + std::string(what) + " is missing" + usage(verb);
}

std::string wordTooMany(const Verb& verb, std::string_view word) {
    const Option* const output = verb.option("output");
    return verb.name + ": '" + std::string(word) + "' is one word too many" +
           (output != nullptr ? "; -o names the file to write" : "") + usage(verb);
}

}  // namespace orv::cli
