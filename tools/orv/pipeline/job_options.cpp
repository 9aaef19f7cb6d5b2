#include "pipeline/job_options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"
#include "methods/suggestion.h"
#include "options/common_options.h"

namespace orv::cli {

namespace {

constexpr int kLongestSide = 1000000;

const Option* findOption(std::string_view name) {
    for (const OptionGroup* const group : {&kFileOptions, &kRunOptions}) {
        for (const Option& option : group->options) {
            if (option.name == name) {
                return &option;
            }
        }
    }
    return nullptr;
}

/// Checks a text against the words of its option.
std::string checkWord(std::string_view name, const std::string& text) {
    const Option* const option = findOption(name);
    if (option == nullptr) {
        return {};
    }
    std::vector<std::string_view> known;
    for (std::string_view rest = option->words; !rest.empty();) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        known.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (std::find(known.begin(), known.end(), text) != known.end()) {
        return {};
    }
    return "--" + std::string(name) + ": '" + text + "' is not known" +
           didYouMean(text, known) + " (expected " + std::string(option->expected) + ")";
}

std::string readWhole(std::string_view name, const std::string& text, int most, int& value) {
    const char* const end = text.data() + text.size();
    int number = 0;
    const auto [stop, problem] = std::from_chars(text.data(), end, number);
    if (problem != std::errc() || stop != end || number < 1 || number > most) {
        return "--" + std::string(name) + ": '" + text + "' is not a whole number from 1 to " +
               std::to_string(most);
    }
    value = number;
    return {};
}

/// Sets one option, from the command line or from a recipe.
std::string setOption(std::string_view name, const std::string& text, JobOptions& options) {
    if (name == "quality") {
        return readWhole(name, text, 100, options.quality);
    }
    if (name == "max-side") {
        return readWhole(name, text, kLongestSide, options.maxSide);
    }
    if (name != "format" && name != "strip" && name != "alpha") {
        return {};
    }
    std::string error = name == "format" && formatOfWord(text) != nullptr
                            ? std::string()
                            : checkWord(name, text);
    if (!error.empty()) {
        return error;
    }
    if (name == "format") {
        options.format = text[0] == '.' ? text.substr(1) : text;
    } else if (name == "strip") {
        stripOfWord(text, options.strip);
    } else {
        options.alpha = text == "drop"      ? AlphaMode::Drop
                        : text == "restore" ? AlphaMode::Restore
                                            : AlphaMode::Keep;
    }
    return {};
}

}  // namespace

std::string readJobOptions(const CommandLine& line, JobOptions& options) {
    for (const auto& [name, text] : line.options) {
        std::string error = setOption(name, text, options);
        if (error.empty() && name == "progress" && !readProgressStyle(text, options.progress)) {
            error = checkWord(name, text);
        }
        if (error.empty() && text.empty()) {
            error = "--" + name + ": the value is empty";
        }
        if (!error.empty()) {
            return error;
        }
    }
    options.memory = line.text("max-memory");
    options.force = line.given("force");
    options.quiet = line.given("quiet");
    options.recipe = line.text("recipe");
    options.comparison = line.text("compare");
    return {};
}

std::string setParameters(const NamedTexts& given, Step& step) {
    const Method& method = *step.method;
    bool asked = method.automatic;
    bool off = false;  // as steps that were written down say it
    for (const auto& [name, text] : given) {
        std::string error;
        if (method.choose != nullptr && name == kStrengthParameter.name) {
            double strength = 0.0;
            error = parseValue(kStrengthParameter, text, strength);
            error = error.empty() ? error : "--" + name + ": " + error;
            step.strength = strength;
            asked = true;
        } else if (method.choose != nullptr && name == kAutoParameter.name) {
            double on = 0.0;
            error = parseValue(kAutoParameter, text, on);
            asked = on != 0.0;
            off = on == 0.0;
        } else {
            error = step.arguments.set(name, text);
        }
        if (!error.empty()) {
            return error;
        }
    }
    step.automatic = asked && !off && !step.arguments.allGiven();
    return {};
}

std::string stepsOf(const Recipe& recipe, std::vector<Step>& steps) {
    for (const RecipeStep& told : recipe.steps) {
        const Method* const method = findMethod(told.verb);
        if (method == nullptr) {
            return "unknown verb '" + told.verb + "'";
        }
        Step step{method, Arguments(method->parameters), told.second};
        std::string error = setParameters(told.parameters, step);
        if (!error.empty()) {
            return error;
        }
        steps.push_back(std::move(step));
    }
    return {};
}

std::string takeRecipeOptions(const Recipe& recipe, const CommandLine& line,
                              JobOptions& options) {
    for (const auto& [name, text] : recipe.options) {
        if (line.given(name)) {
            continue;
        }
        std::string error = setOption(name, text, options);
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

std::vector<std::string> warningsOf(const Step& step) {
    std::string warning = solverWarning(step.arguments.integer("solver"),
                                        step.arguments.integer("solver-iterations"),
                                        step.arguments.integer("scheme"));
    return warning.empty() ? std::vector<std::string>() : std::vector{std::move(warning)};
}

}  // namespace orv::cli
