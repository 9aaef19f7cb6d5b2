#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>

#include "methods/suggestion.h"

namespace orv::cli {

namespace {

/// The options of a verb as the user writes them, for "did you mean".
std::vector<std::string> optionNames(const Syntax& syntax) {
    std::vector<std::string> names{"--help"};
    if (syntax.files) {
        names.insert(names.end(), {"--force", "--quiet"});
    }
    if (syntax.json) {
        names.push_back("--json");
    }
    for (const Parameter& parameter : syntax.parameters) {
        names.push_back("--" + std::string(parameter.name));
    }
    return names;
}

std::string unexpected(const Syntax& syntax, const std::string& word) {
    if (word.size() < 2 || word[0] != '-') {
        return "unexpected argument '" + word + "'";
    }
    const std::string option = word.substr(0, word.find('='));
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

std::string missingFile(const Syntax& syntax, const char* what) {
    const std::string verb(syntax.verb);
    return verb + ": " + what + " is missing (usage: orv " + verb + " IN OUT [options])";
}

/// The line for a word that the parser stumbled over, which as a rule is a missing value.
std::string missingValue(const Syntax& syntax, const CLI::ParseError& error) {
    const std::string text = error.what();
    for (const Parameter& parameter : syntax.parameters) {
        const std::string option = "--" + std::string(parameter.name);
        if (text.compare(0, option.size(), option) == 0 &&
            (text.size() == option.size() || text[option.size()] == ':' ||
             text[option.size()] == ' ')) {
            return parameter.kind == ParameterKind::Flag
                       ? option + ": takes no value"
                       : option + ": the value is missing (expected " + expectation(parameter) +
                             ")";
        }
    }
    return text.substr(0, text.find('\n'));
}

}  // namespace

std::string readCommandLine(const Syntax& syntax, int argc, const char* const* argv,
                            CommandLine& line) {
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    app.add_flag("-h,--help", line.help);
    if (syntax.files) {
        app.add_flag("-f,--force", line.force);
        app.add_flag("-q,--quiet", line.quiet);
        app.add_option("IN", line.input);
        app.add_option("OUT", line.output);
    }
    if (syntax.json) {
        app.add_flag("--json", line.json);
    }
    std::vector<std::string> texts(syntax.parameters.size());
    std::vector<CLI::Option*> options;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const Parameter& parameter = syntax.parameters[i];
        const std::string name = "--" + std::string(parameter.name);
        options.push_back(parameter.kind == ParameterKind::Flag
                              ? app.add_flag(name)
                              : app.add_option(name, texts[i])->take_last());
    }

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
    error = firstUnwanted(syntax, app.remaining());
    if (!error.empty()) {
        return error;
    }
    if (syntax.files && line.input.empty()) {
        return missingFile(syntax, "the picture to read");
    }
    if (syntax.files && line.output.empty()) {
        return missingFile(syntax, "the file to write");
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (options[i]->count() > 0) {
            const bool isFlag = syntax.parameters[i].kind == ParameterKind::Flag;
            line.values.emplace_back(syntax.parameters[i].name, isFlag ? "on" : texts[i]);
        }
    }
    return {};
}

}  // namespace orv::cli
