#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exit_code.h"
#include "files/image_file.h"
#include "methods/arguments.h"
#include "methods/automatic.h"
#include "methods/method.h"
#include "recipe/recipe.h"
#include "terminal/progress_style.h"

namespace orv::cli {

/// One method in a chain.
struct Step {
    const Method* method = nullptr;
    Arguments arguments;
    std::string second;  ///< file of the second picture, for methods that take two
    /// Whether the parameters that aren't given are chosen for each picture.
    bool automatic = false;
    /// What to choose by, 0 to 100; by the noise of the picture when there is none.
    std::optional<double> strength = {};
    std::string secondPixels = {};  ///< the pixelHash() of that picture, once it was read
    /// What was measured and chosen, once that is done.
    std::optional<AutomaticChoice> choice = {};
};

/// What becomes of the transparency.
enum class AlphaMode { Keep, Restore, Drop };

/// What holds for all pictures of one command.
struct JobOptions {
    std::string format;  ///< as --format has it; empty: by the ending of the output
    int quality = WriteSettings::kUsualQuality;  ///< of JPEG and WebP, 1 to 100
    Strip strip = Strip::None;
    AlphaMode alpha = AlphaMode::Keep;
    int maxSide = 0;     ///< pixels; 0: as it is
    std::string memory;  ///< as --max-memory has it; empty: three quarters of what is free
    bool force = false;  ///< overwrite
    bool quiet = false;
    ProgressStyle progress = ProgressStyle::Automatic;
    std::string recipe;      ///< file to write, or empty
    std::string comparison;  ///< file to write, or empty
    std::string command;     ///< the whole command as the user typed it
    /// The recipe that is replayed, whose pixels the result is compared with.
    std::optional<Recipe> replayed = {};
};

/// One picture on its way.
struct JobFiles {
    std::string input;   ///< "-" for standard input
    std::string output;  ///< "-" for standard output
    int number = 1;      ///< of `count` pictures
    int count = 1;
};

/// Reads a picture, runs the steps on it one after another, and writes it.
///
/// Errors, warnings and progress go to standard error, the line about the result to standard
/// output, unless that carries the picture.
ExitCode runJob(const std::vector<Step>& steps, const JobOptions& options,
                const JobFiles& files);

}  // namespace orv::cli
