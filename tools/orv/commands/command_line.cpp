#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>

#include "methods/method_catalogue.h"
#include "methods/suggestion.h"

namespace orv::cli {

namespace {

/// The options of a verb as the user writes them, for "did you mean".
std::vector<std::string> optionNames(const Syntax& syntax) {
    std::vector<std::string> names{"--help"};
    if (syntax.files()) {
        names.insert(names.end(), {"--force", "--quiet"});
    }
    if (syntax.json) {
        names.push_back("--json");
    }
    if (syntax.outputByOption()) {
        names.push_back("--output");
    }
    for (const TextOption& text : syntax.texts) {
        names.push_back("--" + std::string(text.name));
    }
    for (const Parameter& parameter : syntax.parameters) {
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

/// The other verbs that have an option, as "denoise" or "methods and solvers"; empty when none.
std::string verbsWith(const std::string& option) {
    if (option == "--json") {
        return "methods and solvers";
    }
    if (option == "--force" || option == "--quiet" || option == "-f" || option == "-q") {
        return "the verbs that write a picture";
    }
    std::vector<std::string_view> verbs;
    for (const Method* const method : methodCatalogue()) {
        for (const Parameter& parameter : method->parameters) {
            if (option == "--" + std::string(parameter.name)) {
                verbs.push_back(method->name);
            }
        }
    }
    return listed(verbs);
}

std::string unexpected(const Syntax& syntax, const std::string& word) {
    const std::string verb(syntax.verb);
    if (word.size() < 2 || word[0] != '-') {
        if (syntax.outputByOption()) {
            return verb + ": takes one picture; '" + word +
                   "' is one word too many (-o names the file to write)";
        }
        return syntax.files() ? verb + ": takes one picture at a time: " + fileWords(syntax) +
                                    " ('" + word + "' is one word too many)"
                              : "unexpected argument '" + word + "'";
    }
    const std::string option = word.substr(0, word.find('='));
    const std::string others = verbsWith(option);
    if (!others.empty()) {
        return option + ": is an option of " + others + ", not of " + verb;
    }
    const std::vector<std::string> names = optionNames(syntax);
    const std::vector<std::string_view> views(names.begin(), names.end());
    return "unknown option '" + option + "'" + didYouMean(option, views);
}

/// A flag that was given a value, which the parser would take or drop as it sees fit.
std::string flagWithValue(const Syntax& syntax, int argc, const char* const* argv) {
    std::vector<std::string_view> flags{"--help", "--force", "--quiet", "--json"};
    for (const Parameter& parameter : syntax.parameters) {
        if (parameter.kind == ParameterKind::Flag) {
            flags.push_back(parameter.name);
        }
    }
    for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
        const std::string_view word = argv[i];
        const std::size_t equals = word.find('=');
        if (equals == std::string_view::npos || word.substr(0, 2) != "--") {
            continue;
        }
        for (const std::string_view flag : flags) {
            if (word.substr(0, equals) == flag || word.substr(2, equals - 2) == flag) {
                return std::string(word.substr(0, equals)) + ": takes no value";
            }
        }
    }
    return {};
}

/// What is wrong with the first word that nobody wanted; empty when there is none.
std::string firstUnwanted(const Syntax& syntax, std::vector<std::string> extras) {
    // The mark that ends the options is handed back with the words that nobody wanted.
    extras.erase(std::remove(extras.begin(), extras.end(), "--"), extras.end());
    for (const std::string& word : extras) {
        // An unknown option explains the words around it better than they do themselves.
        if (word.size() > 1 && word[0] == '-') {
            return unexpected(syntax, word);
        }
    }
    if (!extras.empty()) {
        return unexpected(syntax, extras.front());
    }
    return {};
}

/// What is wrong when a file name is missing; empty when none is.
std::string missingFile(const Syntax& syntax, const CommandLine& line) {
    std::string what;
    if (line.input.empty()) {
        what = "the picture to read";
    } else if (!syntax.secondPicture.empty() && line.second.empty()) {
        what = "the second picture, " + std::string(syntax.secondPicture) + ",";
    } else if (line.output.empty() && !syntax.outputByOption()) {
        what = "the file to write";
    } else {
        return {};
    }
    const std::string verb(syntax.verb);
    return verb + ": " + what + " is missing (usage: orv " + verb + " " + fileWords(syntax) +
           " [options])";
}

/// "--option: the value is missing (expected ...)"
std::string valueMissing(const std::string& option, std::string_view expected) {
    return option + ": the value is missing (expected " + std::string(expected) + ")";
}

/// Whether the parser's complaint is about an option.
bool isAbout(const std::string& text, const std::string& option) {
    return text.compare(0, option.size(), option) == 0 &&
           (text.size() == option.size() || text[option.size()] == ':' ||
            text[option.size()] == ' ');
}

/// The line for a word that the parser stumbled over, which as a rule is a missing value.
std::string missingValue(const Syntax& syntax, const CLI::ParseError& error) {
    const std::string text = error.what();
    for (const Parameter& parameter : syntax.parameters) {
        const std::string option = "--" + std::string(parameter.name);
        if (isAbout(text, option)) {
            return parameter.kind == ParameterKind::Flag
                       ? option + ": takes no value"
                       : valueMissing(option, expectation(parameter));
        }
    }
    for (const TextOption& candidate : syntax.texts) {
        const std::string option = "--" + std::string(candidate.name);
        if (isAbout(text, option)) {
            return valueMissing(option, candidate.expected);
        }
    }
    if (isAbout(text, "--output")) {
        return valueMissing("--output", syntax.outputExpected);
    }
    return text.substr(0, text.find('\n'));
}

/// The parser's options of a verb, each of which may stand once.
struct Options {
    CLI::Option* force = nullptr;
    CLI::Option* quiet = nullptr;
    CLI::Option* json = nullptr;
    CLI::Option* output = nullptr;
    std::vector<CLI::Option*> parameters;  ///< one for each parameter
    std::vector<std::string> values;       ///< their values, which mustn't move
    std::vector<CLI::Option*> texts;       ///< one for each text
    std::vector<std::string> textValues;   ///< their values, which mustn't move

    Options(CLI::App& app, const Syntax& syntax, CommandLine& line)
        : values(syntax.parameters.size()), textValues(syntax.texts.size()) {
        app.set_help_flag();
        app.allow_extras();
        app.add_flag("-h,--help", line.help);
        if (syntax.files()) {
            force = app.add_flag("-f,--force");
            quiet = app.add_flag("-q,--quiet");
            app.add_option("first", line.input);
            if (!syntax.secondPicture.empty()) {
                app.add_option("second", line.second);
            }
            if (syntax.outputByOption()) {
                output = app.add_option("-o,--output", line.output)->take_last();
            } else {
                app.add_option("out", line.output);
            }
        }
        if (syntax.json) {
            json = app.add_flag("--json");
        }
        for (std::size_t i = 0; i < textValues.size(); ++i) {
            const std::string name = "--" + std::string(syntax.texts[i].name);
            texts.push_back(app.add_option(name, textValues[i])->take_last());
        }
        for (std::size_t i = 0; i < values.size(); ++i) {
            const Parameter& parameter = syntax.parameters[i];
            const std::string name = "--" + std::string(parameter.name);
            parameters.push_back(parameter.kind == ParameterKind::Flag
                                     ? app.add_flag(name)
                                     : app.add_option(name, values[i])->take_last());
        }
    }

    /// What is wrong with the first option that was given more than once; empty when none was.
    std::string repeated() const {
        std::vector<const CLI::Option*> all(parameters.begin(), parameters.end());
        all.insert(all.end(), texts.begin(), texts.end());
        all.insert(all.end(), {force, quiet, json, output});
        for (const CLI::Option* const option : all) {
            if (option != nullptr && option->count() > 1) {
                return "--" + option->get_lnames().front() + ": is given " +
                       std::to_string(option->count()) + " times; give it once";
            }
        }
        return {};
    }
};

bool given(const CLI::Option* option) {
    return option != nullptr && option->count() > 0;
}

}  // namespace

std::string fileWords(std::string_view picture, std::string_view secondPicture) {
    std::string words(picture);
    if (!secondPicture.empty()) {
        words += " " + std::string(secondPicture);
    }
    return words + " OUT";
}

std::string fileWords(const Syntax& syntax) {
    return syntax.outputByOption() ? std::string(syntax.picture)
                                   : fileWords(syntax.picture, syntax.secondPicture);
}

std::string readCommandLine(const Syntax& syntax, int argc, const char* const* argv,
                            CommandLine& line) {
    CLI::App app;
    const Options options(app, syntax, line);
    std::string error = flagWithValue(syntax, argc, argv);
    if (!error.empty()) {
        return error;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& problem) {
        return missingValue(syntax, problem);
    }
    if (line.help) {
        return {};
    }
    error = options.repeated();
    if (error.empty()) {
        error = firstUnwanted(syntax, app.remaining());
    }
    if (!error.empty()) {
        return error;
    }
    if (syntax.files()) {
        error = missingFile(syntax, line);
        if (!error.empty()) {
            return error;
        }
    }
    if (given(options.output) && line.output.empty()) {
        return valueMissing("--output", syntax.outputExpected);
    }
    line.force = given(options.force);
    line.quiet = given(options.quiet);
    line.json = given(options.json);
    for (std::size_t i = 0; i < options.parameters.size(); ++i) {
        if (given(options.parameters[i])) {
            const bool isFlag = syntax.parameters[i].kind == ParameterKind::Flag;
            line.values.emplace_back(syntax.parameters[i].name,
                                     isFlag ? "on" : options.values[i]);
        }
    }
    for (std::size_t i = 0; i < options.texts.size(); ++i) {
        if (given(options.texts[i])) {
            line.texts.emplace_back(syntax.texts[i].name, options.textValues[i]);
        }
    }
    return {};
}

}  // namespace orv::cli
