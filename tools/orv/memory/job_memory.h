#pragma once

#include <vector>

#include "methods/interleaved_planes.h"
#include "pipeline/job.h"

namespace orv::cli {

/// What is known of a picture before its samples are read.
struct PictureSize {
    int width = 0;
    int height = 0;
    int channels = 3;  ///< those that are no colour included
    int colours = 3;   ///< 1 or 3
    SampleDepth depth = SampleDepth::Bits8;
    double fileBytes = 0.0;
    bool turned = false;  ///< its orientation asks for turning
};

/// The size that the head of a file tells.
PictureSize sizeOf(const PictureHeader& header);

/// What decides on the memory of a job beside its steps.
struct JobShape {
    PictureSize picture = {};
    /// Of the second pictures of steps that take one; the largest where there are several.
    PictureSize second = {};
    AlphaMode alpha = AlphaMode::Keep;
    int maxSide = 0;        ///< the picture is read whole and then scaled down to this; 0: not
    bool compared = false;  ///< the picture is kept to be compared with the result
};

/// The most bytes that the tool holds at the same time on the way of one picture: itself, the
/// file as it is read, the samples, the planes and what the methods need, the file as it is
/// written.
///
/// Parameters that automation is still to choose count as they are chosen for strong noise.
double jobBytes(const std::vector<Step>& steps, const JobShape& shape);

/// jobBytes of one method as it runs without parameters; a second picture has the size of the
/// first.
double methodJobBytes(const Method& method, const PictureSize& picture);

/// The largest maximal side, in pixels, with which the job fits `limit`; 0 when none does.
int largestSide(const std::vector<Step>& steps, const JobShape& shape, double limit);

}  // namespace orv::cli
