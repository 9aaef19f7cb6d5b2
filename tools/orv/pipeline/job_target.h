#pragma once

#include <string>
#include <vector>

#include "files/output_file.h"
#include "pipeline/job.h"
#include "pipeline/step_runner.h"

namespace orv::cli {

/// Where the result of a job goes: a file, or standard output.
class JobTarget {
  public:
    /// Nothing is looked at yet.
    JobTarget(const JobFiles& files, const JobOptions& options);

    /// Decides the format: by --format, by the ending of the output, or that of the input where
    /// the result goes to standard output.
    Failure choose(const PictureHeader& header);
    /// Makes the file under another name.
    Failure open();
    /// Refuses what the format can't hold, and warns of what it rounds.
    Failure check(Picture& picture) const;
    /// Writes the picture; a file keeps its other name until commit().
    Failure write(Picture& picture);
    /// Gives the file its name, or sends the bytes to standard output.
    Failure commit();

    const WriteSettings& settings() const { return settings_; }
    /// "out.png: 451 x 300 pixels, 8-bit colour, 208 KB, in 0.20 s"
    std::string resultLine(const Picture& picture, double seconds) const;

  private:
    bool toStream() const { return files_.output == "-"; }
    /// What messages call it.
    std::string name() const { return toStream() ? "standard output" : files_.output; }

    const JobFiles& files_;
    const JobOptions& options_;
    WriteSettings settings_;
    OutputFile file_;
    std::vector<unsigned char> bytes_;  // for standard output
};

}  // namespace orv::cli
