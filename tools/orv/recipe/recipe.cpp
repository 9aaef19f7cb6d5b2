#include "recipe/recipe.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>

#include "methods/automatic.h"
#include "methods/method_catalogue.h"
#include "recipe/step_parameters.h"
#include "system/file_system.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

bool isOn(const Parameter& flag, std::string_view text) {
    double value = 0.0;
    return parseValue(flag, text, value).empty() && value != 0.0;
}

/// The parameter as an option of the command line, which has none for a flag that is off and
/// none for a method to be automatic that is so by itself.
std::string optionText(const Method* method, const std::string& name, const std::string& text) {
    const Parameter* const parameter =
        method == nullptr ? nullptr : stepParameter(*method, name);
    if (parameter != nullptr && parameter->kind == ParameterKind::Flag) {
        const bool unneeded = isAutomation(*method, name) && method->automatic;
        return isOn(*parameter, text) && !unneeded ? " --" + name : std::string();
    }
    return " --" + name + " " + shellWord(text);
}

}  // namespace

std::string readRecipeFile(const std::string& path, Recipe& recipe) {
    FileState state;
    if (!readState(path, state)) {
        return path + ": " + std::strerror(errno);
    }
    if (state.kind == FileKind::Folder) {
        return path + ": is a folder; name a recipe in it";
    }
    const auto close = [](std::FILE* file) { std::fclose(file); };
    const std::unique_ptr<std::FILE, decltype(close)> file(openFile(path, "rb"), close);
    if (file == nullptr) {
        return path + ": " + std::strerror(errno);
    }
    std::string text;
    std::array<char, 16384> block{};
    std::size_t count = 0;
    // One block too many tells a file that is too long.
    while (text.size() <= kLongestRecipe &&
           (count = std::fread(block.data(), 1, block.size(), file.get())) > 0) {
        text.append(block.data(), count);
    }
    if (std::ferror(file.get()) != 0) {
        return path + ": can't be read";
    }
    const std::string error = readRecipe(text, recipe);
    return error.empty() ? error : path + ": " + error;
}

std::string valueText(const Parameter& parameter, double value) {
    if (parameter.kind == ParameterKind::Flag) {
        return value != 0.0 ? "on" : "off";
    }
    if (parameter.kind == ParameterKind::Choice) {
        for (const Choice& candidate : parameter.choices()) {
            if (candidate.value == value) {
                return std::string(candidate.name);
            }
        }
    }
    return numberText(value);
}

RecipeStep completeStep(const Method& method, const Arguments& arguments) {
    RecipeStep step;
    step.verb = method.name;
    for (const Parameter& parameter : method.parameters) {
        step.parameters.emplace_back(parameter.name,
                                     valueText(parameter, arguments.real(parameter.name)));
    }
    if (method.choose != nullptr) {
        step.parameters.emplace_back(kAutoParameter.name, "off");
    }
    return step;
}

std::string chainText(std::span<const RecipeStep> steps) {
    std::string chain;
    for (const RecipeStep& step : steps) {
        const Method* const method = findMethod(step.verb);
        chain += (chain.empty() ? "" : " , ") + shellWord(step.verb);
        chain += step.second.empty() ? "" : " " + shellWord(step.second);
        for (const auto& [name, text] : step.parameters) {
            chain += optionText(method, name, text);
        }
    }
    return chain;
}

Verdict compareWithRecipe(const Recipe& recipe, const PictureFacts& input,
                          const PictureFacts& output) {
    if (!recipe.input || !recipe.output || recipe.input->pixels.empty() ||
        recipe.output->pixels.empty()) {
        return Verdict::NothingToCompare;
    }
    if (recipe.input->pixels != input.pixels) {
        return Verdict::OtherPicture;
    }
    return recipe.output->pixels == output.pixels ? Verdict::Same : Verdict::Different;
}

std::string verdictText(const Recipe& recipe, Verdict verdict, std::string_view program) {
    switch (verdict) {
        case Verdict::NothingToCompare:
            return "the recipe names no pixels, so there was nothing to verify";
        case Verdict::OtherPicture:
            return "the recipe was written for another picture, so there was nothing to verify";
        case Verdict::Same:
            return "verified: pixel by pixel the result that the recipe names";
        case Verdict::Different:
            break;
    }
    std::string text = "not the result that the recipe names: other pixels from the same input";
    if (!recipe.program.empty() && recipe.program != program) {
        text += " (" + recipe.program + " wrote it, this is " + std::string(program) + ")";
    }
    return text;
}

}  // namespace orv::cli
