#include "batch/finished_work.h"

#include "files/output_file.h"
#include "recipe/recipe.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

bool isSame(const PictureFacts& facts, const FileStamp& stamp) {
    return facts.bytes == stamp.bytes && facts.modified == stamp.modified;
}

void note(const FileStamp& stamp, PictureFacts& facts) {
    facts.bytes = stamp.bytes;
    facts.modified = stamp.modified;
}

}  // namespace

Finished finishedWork(const BatchFile& file, const std::string& request, std::string& reason) {
    if (!isTaken(file.output)) {
        return Finished::Nothing;
    }
    FileStamp stamp;
    Recipe recipe;
    if (!readStamp(file.output, stamp)) {
        reason = file.output + " is no file, so nothing can be written there";
    } else if (!readRecipeFile(file.recipe, recipe).empty() || !recipe.input ||
               !recipe.output) {
        reason = file.output + " stands there without a recipe; --force overwrites it";
    } else if (!isSame(*recipe.output, stamp)) {
        reason = file.output + " was changed after it was made; --force overwrites it";
    } else if (recipe.request != request) {
        reason = file.output + " was made by '" + recipe.request +
                 "'; --force makes it again by '" + request + "'";
    } else if (!isSame(*recipe.input, file.stamp)) {
        reason = "has changed since " + file.output + " was made; --force makes it again";
    } else {
        return Finished::Whole;
    }
    return Finished::Other;
}

std::string completeRecipe(const std::string& recipePath, const std::string& request,
                           const BatchFile& file, const std::string& staged) {
    FileStamp stamp;
    if (!readStamp(staged, stamp)) {
        return "the worker wrote no picture";
    }
    Recipe recipe;
    const std::string error = readRecipeFile(recipePath, recipe);
    if (!error.empty() || !recipe.input || !recipe.output) {
        return "the worker wrote no recipe";
    }
    recipe.request = request;
    recipe.input->file = file.input;
    note(file.stamp, *recipe.input);
    recipe.output->file = file.output;
    note(stamp, *recipe.output);
    return writeText(recipePath, writeRecipe(recipe)).empty() ? std::string()
                                                              : "the recipe can't be written";
}

}  // namespace orv::cli
