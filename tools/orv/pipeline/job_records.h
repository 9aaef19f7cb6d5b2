#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/output_file.h"
#include "pipeline/job.h"
#include "pipeline/step_runner.h"

namespace orv::cli {

/// What a job leaves beside its picture: the recipe, the comparison of before and after, and
/// the verdict on a recipe that was replayed.
class JobRecords {
  public:
    /// Nothing is looked at yet.
    JobRecords(const JobFiles& files, const JobOptions& options);

    /// Makes the files under other names.
    Failure open();
    /// Remembers the picture as it was read.
    void takeInput(const Picture& picture);
    /// Keeps the picture that the steps start from, where a comparison is asked for.
    void takeBefore(const Picture& picture);
    /// Writes the files.
    Failure write(const std::vector<Step>& steps, const Picture& result);
    /// Gives the files their names.
    Failure commit();
    /// What the recipe that was replayed says of the result, as one line; empty without one.
    const std::string& verdict() const { return verdict_; }
    /// Whether the result is another than that of the recipe, from the same input.
    bool differs() const { return differs_; }

  private:
    void verify(const PictureFacts& result);
    Failure writeRecipeOf(const std::vector<Step>& steps, const PictureFacts& result);
    Failure writeComparisonWith(const Picture& result);
    bool needsFacts() const {
        return !options_.recipe.empty() || options_.replayed.has_value();
    }

    const JobFiles& files_;
    const JobOptions& options_;
    PictureFacts input_;
    std::optional<Picture> before_;
    OutputFile recipe_;
    OutputFile comparison_;
    std::string verdict_;
    bool differs_ = false;
};

/// The recipe of a run, with every parameter of its steps.
Recipe recipeOf(const std::vector<Step>& steps, const JobOptions& options);

/// What was measured and chosen, with the command that it amounts to, and a line break; empty
/// when nothing was chosen.
std::string automaticLine(const std::vector<Step>& steps, const JobFiles& files,
                          const JobOptions& options);

}  // namespace orv::cli
