#include "pipeline/job_records.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "compare/comparison.h"
#include "methods/parameter.h"
#include "recipe/pixel_hash.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

Failure written(const std::string& path, const std::string& error) {
    return error.empty() ? Failure{}
                         : Failure{ExitCode::Output, path + ": can't be written: " + error};
}

std::string alphaWord(AlphaMode mode) {
    return mode == AlphaMode::Drop ? "drop" : mode == AlphaMode::Restore ? "restore" : "keep";
}

std::string stripWord(Strip strip) {
    switch (strip) {
        case Strip::Gps:
            return "gps";
        case Strip::Exif:
            return "exif";
        case Strip::All:
            return "all";
        case Strip::None:
            break;
    }
    return {};
}

}  // namespace

JobRecords::JobRecords(const JobFiles& files, const JobOptions& options)
    : files_(files), options_(options) {}

Failure JobRecords::open() {
    std::string error;
    if (!options_.comparison.empty()) {
        error = comparisonRefusal(options_.comparison);
        if (error.empty()) {
            error = comparison_.open(options_.comparison, options_.force);
        }
    }
    if (error.empty() && !options_.recipe.empty()) {
        error = recipe_.open(options_.recipe, options_.force);
    }
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

void JobRecords::takeInput(const Picture& picture) {
    if (needsFacts()) {
        input_ = pictureFacts(files_.input, picture.samples);
    }
}

void JobRecords::takeBefore(const Picture& picture) {
    if (!options_.comparison.empty()) {
        before_ = picture;
    }
}

Failure JobRecords::write(const std::vector<Step>& steps, const Picture& result) {
    PictureFacts output;
    if (needsFacts()) {
        output = pictureFacts(files_.output, result.samples);
    }
    if (options_.replayed.has_value()) {
        verify(output);
    }
    Failure failure;
    if (!options_.recipe.empty()) {
        failure = writeRecipeOf(steps, output);
    }
    if (!failure && !options_.comparison.empty()) {
        failure = writeComparisonWith(result);
    }
    return failure;
}

void JobRecords::verify(const PictureFacts& result) {
    const Verdict verdict = compareWithRecipe(*options_.replayed, input_, result);
    if (verdict != Verdict::NothingToCompare) {
        verdict_ =
            files_.input + ": " + verdictText(*options_.replayed, verdict, "orv " ORV_VERSION);
        differs_ = verdict == Verdict::Different;
    }
}

Failure JobRecords::writeRecipeOf(const std::vector<Step>& steps, const PictureFacts& result) {
    Recipe recipe = recipeOf(steps, options_);
    recipe.input = input_;
    recipe.output = result;
    return written(options_.recipe, writeText(recipe_.temporaryPath(), writeRecipe(recipe)));
}

Failure JobRecords::writeComparisonWith(const Picture& result) {
    const std::string refusal = sizeRefusal(files_.input, *before_, files_.output, result);
    if (!refusal.empty()) {
        return {ExitCode::Output, options_.comparison + ": " + refusal};
    }
    const ComparisonFacts facts{files_.input, files_.output, options_.command};
    const PictureComparison figures = comparePictures(*before_, result);
    const Comparison comparison{*before_, result, facts, figures};
    return written(options_.comparison,
                   writeComparison(comparison, comparison_.temporaryPath(),
                                   comparisonFormatOf(options_.comparison)));
}

Failure JobRecords::commit() {
    std::string error = options_.comparison.empty() ? std::string() : comparison_.commit();
    if (error.empty() && !options_.recipe.empty()) {
        error = recipe_.commit();
    }
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

Recipe recipeOf(const std::vector<Step>& steps, const JobOptions& options) {
    Recipe recipe;
    recipe.program = "orv " ORV_VERSION;
    for (const Step& step : steps) {
        recipe.steps.push_back(completeStep(*step.method, step.arguments));
        recipe.steps.back().second = step.second;
        recipe.steps.back().secondPixels = step.secondPixels;
    }
    if (!options.format.empty()) {
        recipe.options.emplace_back("format", options.format);
    }
    recipe.options.emplace_back("quality", std::to_string(options.quality));
    if (options.strip != Strip::None) {
        recipe.options.emplace_back("strip", stripWord(options.strip));
    }
    recipe.options.emplace_back("alpha", alphaWord(options.alpha));
    if (options.maxSide > 0) {
        recipe.options.emplace_back("max-side", std::to_string(options.maxSide));
    }
    return recipe;
}

namespace {

/// "noise 20.1 grey levels (red 20.2, ...), strength 40", or the strength that was given.
std::string foundText(const AutomaticChoice& choice) {
    if (!choice.measured) {
        return "strength " + numberText(choice.strength);
    }
    const bool nothing = noiseOfEstimate(choice.noise).channel <= 0.0;
    return noiseText(choice.noise) +
           (nothing ? ", too little to remove"
                    : ", strength " + numberText(std::round(choice.strength)));
}

/// The options that aren't at their defaults, as the command line has them.
std::string optionsText(const JobOptions& options) {
    const Recipe plain = recipeOf({}, JobOptions{});
    std::string text;
    for (const auto& option : recipeOf({}, options).options) {
        if (std::find(plain.options.begin(), plain.options.end(), option) ==
            plain.options.end()) {
            text +=
                " --" + option.first + (option.first == "strip" ? "=" : " ") + option.second;
        }
    }
    return text;
}

}  // namespace

std::string automaticLine(const std::vector<Step>& steps, const JobFiles& files,
                          const JobOptions& options) {
    std::string found;
    std::string chain;
    for (const Step& step : steps) {
        if (step.choice.has_value()) {
            found += (found.empty() ? "" : ", then ") + foundText(*step.choice);
        }
        chain += std::string(chain.empty() ? "" : " , ") + std::string(step.method->name);
        if (chain.find(' ') == std::string::npos) {
            chain += " " + shellFile(files.input);
        }
        chain += step.second.empty() ? "" : " " + shellFile(step.second);
        chain += step.arguments.commandText();
    }
    return found.empty() ? std::string()
                         : files.input + ": " + found + "; as: orv " + chain +
                               optionsText(options) + " -o " + shellFile(files.output) + "\n";
}

}  // namespace orv::cli
