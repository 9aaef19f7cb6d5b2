#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "methods/method.h"

namespace orv::cli {

/// Names with values as a user would type them.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// One run of a method.
struct RecipeStep {
    std::string verb;
    NamedTexts parameters;     ///< those that were given; the others have their defaults
    std::string second;        ///< file of the second picture, for methods that take two
    std::string secondPixels;  ///< its pixelHash(), or empty when that isn't told
};

/// What a recipe remembers of a picture.
struct PictureFacts {
    std::string file;  ///< as the user named it
    int width = 0;
    int height = 0;
    int channels = 0;           ///< of a pixel, alpha included
    int bits = 0;               ///< of a sample; 32 are floats
    std::string pixels;         ///< the pixelHash(), or empty when it isn't told
    double bytes = 0.0;         ///< of the file, or 0 when that isn't told
    std::string modified = {};  ///< when it was written last, or empty when that isn't told
};

/// What was done to a picture, or what is to be done.
///
/// `input` and `output` are there in recipes that a run has written, not in those that are
/// written by hand or come with the tool.
struct Recipe {
    std::string program;      ///< what wrote it, such as "orv 0.1.0"
    std::string name;         ///< of a preset
    std::string description;  ///< one line
    std::vector<RecipeStep> steps;
    std::string request;  ///< what a batch was asked for, one line
    NamedTexts options;   ///< of the file, by the names of kRecipeOptions; not checked further
    std::optional<PictureFacts> input;
    std::optional<PictureFacts> output;
};

/// The version of the format that writeRecipe() writes, and the newest that readRecipe() reads.
inline constexpr int kRecipeVersion = 1;

/// The most bytes of a recipe.
inline constexpr std::size_t kLongestRecipe = 1048576;

/// The options of files that a recipe may hold, without their dashes.
inline constexpr std::array<std::string_view, 5> kRecipeOptions{"format", "quality", "strip",
                                                                "alpha", "max-side"};

/// The recipe as JSON text: indented by two spaces, fields in a fixed order, with a line break
/// at the end. The same recipe gives the same bytes.
std::string writeRecipe(const Recipe& recipe);

/// Reads a recipe and checks its steps by the catalogue of the methods.
///
/// Shapes:  `recipe` is written on success alone.
/// Fails:   with one line that begins with the place: "line 3, column 7: ..." where the text is
///          no JSON, "steps[1].parameters.tau: 'wide' is not a number (expected ...)" where it
///          is. An empty text means success.
std::string readRecipe(std::string_view text, Recipe& recipe);

/// Reads a recipe from a file.
///
/// Fails:   as readRecipe(), with the path before the place; also when there is no such file,
///          it is a folder or longer than kLongestRecipe.
std::string readRecipeFile(const std::string& path, Recipe& recipe);

/// The value of a parameter as a user would type it: "0.5", "AOS", "on".
std::string valueText(const Parameter& parameter, double value);

/// The step that runs a method with these arguments, with the values of all its parameters, so
/// that another default in a later version changes nothing. Nothing is left to be chosen.
RecipeStep completeStep(const Method& method, const Arguments& arguments);

/// The steps as a user would type them: "restore --tau 2 , shock --iterations 6".
///
/// A second picture follows the verb. Words that a shell would take apart stand in quotes.
std::string chainText(std::span<const RecipeStep> steps);

/// What a recipe says of a run.
enum class Verdict {
    NothingToCompare,  ///< the recipe names no pixels of its input or output
    OtherPicture,      ///< the input is not the one of the recipe
    Same,              ///< same input, same output
    Different,         ///< same input, another output
};

/// Compares a run with the one that the recipe was written by.
Verdict compareWithRecipe(const Recipe& recipe, const PictureFacts& input,
                          const PictureFacts& output);

/// The verdict in words, one line without a path: "the result is the recipe's, pixel by pixel".
std::string verdictText(const Recipe& recipe, Verdict verdict, std::string_view program);

}  // namespace orv::cli
