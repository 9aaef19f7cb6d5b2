#include "help/option_help.h"

#include "help/help_layout.h"
#include "methods/arguments.h"
#include "methods/automatic.h"

namespace orv::cli {

namespace {

/// Longer lists of choices have a verb of their own.
constexpr std::size_t kShownChoices = 10;

/// The default of a parameter, or word that it is chosen for each picture.
std::string toldDefault(const Verb& verb, const Parameter& parameter) {
    if (verb.method == nullptr || verb.method->choose == nullptr) {
        return defaultText(parameter);
    }
    if (parameter.name == kStrengthParameter.name) {
        return "by the noise";
    }
    Arguments chosen(verb.method->parameters);
    verb.method->choose(noiseOfStrength(/*strength=*/40.0, /*colour=*/true), chosen);
    const std::string written = " --" + std::string(parameter.name) + " ";
    const bool open =
        verb.method->automatic && chosen.commandText().find(written) != std::string::npos;
    return open ? "by the noise" : defaultText(parameter);
}

}  // namespace

std::string writtenOption(const Option& option) {
    std::string text = "--" + std::string(option.name);
    if (option.letter != '\0') {
        text = "-" + std::string(1, option.letter) + ", " + text;
    }
    if (option.kind == OptionKind::Maybe) {
        return text + "[=" + std::string(option.placeholder) + "]";
    }
    return option.placeholder.empty() ? text : text + " " + std::string(option.placeholder);
}

std::string writtenParameter(const Parameter& parameter) {
    const std::string value = placeholder(parameter);
    return "--" + std::string(parameter.name) + (value.empty() ? "" : " " + value);
}

bool listsChoices(const Parameter& parameter) {
    return parameter.kind == ParameterKind::Choice &&
           parameter.choices().size() <= kShownChoices;
}

std::string toldParameter(const Verb& verb, const Parameter& parameter, bool choices) {
    std::string text(parameter.help);
    if (parameter.kind == ParameterKind::Real || parameter.kind == ParameterKind::Integer) {
        text += "; " + unbroken(numberText(parameter.from) + " to " + numberText(parameter.to));
    }
    if (choices && listsChoices(parameter)) {
        text += ":";
        for (const Choice& candidate : parameter.choices()) {
            text += (text.back() == ':' ? " " : ", ") + std::string(candidate.name);
        }
    }
    if (parameter.kind != ParameterKind::Flag) {
        text += " " + unbroken("[default: " + toldDefault(verb, parameter) + "]");
    }
    if (!parameter.larger.empty()) {
        text += "; larger " + std::string(parameter.larger);
    }
    return text;
}

std::string writtenVerb(const Verb& verb) {
    return verb.name + (verb.words.empty() ? "" : " " + verb.words);
}

std::string exampleOf(const Verb& verb) {
    return verb.method != nullptr && verb.example.empty() ? std::string(verb.method->example)
                                                          : verb.example;
}

}  // namespace orv::cli
