#pragma once

#include <string>
#include <utility>
#include <vector>

#include "files/image_file.h"
#include "pipeline/job.h"
#include "pipeline/step_runner.h"
#include "terminal/progress_bar.h"
#include "tune/tune_crop.h"

namespace orv::cli {

/// A parameter with several values.
struct TuneAxis {
    std::string name;
    std::vector<std::string> values;
};

/// One result of a sheet.
struct TuneCell {
    std::vector<std::string> values;  ///< one for each axis
    std::string command;              ///< that gives this result for the whole picture
    Step step;
    Picture crop;        ///< 8 bits
    std::string error;   ///< why the method refused, else empty
    double noise = 0.0;  ///< estimated in the result, grey levels
    double psnr = 0.0;   ///< of the result against the original, decibels; infinite when equal
};

/// What a sheet shows.
struct TuneSheet {
    std::string verb;
    std::string input;
    std::vector<std::pair<std::string, std::string>> fixed;  ///< parameters with one value
    std::vector<TuneAxis> axes;                              ///< one or two
    std::vector<TuneCell> cells;                             ///< the first axis runs fastest
    int width = 0;                                           ///< of the whole picture
    int height = 0;
    CropPlace crop;
    CropPlace worked;  ///< what the method ran on
    Picture original;  ///< the crop, 8 bits
    double noise = 0.0;

    /// Whether the method ran on the whole picture.
    bool whole() const { return worked.width == width && worked.height == height; }
};

/// Up to so many pixels a method runs on the whole picture, above it on the crop with kTuneMargin
/// pixels around.
inline constexpr double kMostTunedWhole = 4.0e6;
inline constexpr int kTuneMargin = 256;

/// Runs the method once for each cell, on the whole picture up to 4 megapixels, else on the crop
/// with 256 pixels around it. Automation measures the whole picture in any case.
///
/// Fails:   with Input for a second picture that can't be read, with Usage for a crop outside
///          the picture, with Refused when the method refused every cell.
Failure runCells(const Picture& picture, const CropOrder& order, TuneSheet& sheet,
                 ProgressBar& bar);

}  // namespace orv::cli
