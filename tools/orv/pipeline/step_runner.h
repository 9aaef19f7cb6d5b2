#pragma once

#include <string>
#include <vector>

#include "pipeline/job.h"
#include "terminal/progress_bar.h"

namespace orv::cli {

/// Why a chain ended before its end.
struct Failure {
    ExitCode code = ExitCode::Done;
    std::string text;  ///< one line, empty for none

    explicit operator bool() const { return code != ExitCode::Done; }
};

/// Reads the second picture of a step, whose hash the step then keeps.
///
/// Shapes:  alpha and metadata of that picture aren't needed and don't come.
/// Fails:   with Input and one line.
Failure readSecond(Step& step, Planes& planes);

/// Runs the steps on a picture, one after another, and puts the result in its place.
///
/// A step that is automatic chooses its open parameters by the planes that reach it, and keeps
/// the choice. Between the steps the samples stay floats: they are rounded once, at the end, to the depth
/// of the picture or to `deepest`, whichever is less.
///
/// Fails:   with Input where a second picture can't be read, with Refused where a method says
///          no; the picture is then half done.
Failure runSteps(std::vector<Step>& steps, AlphaMode alpha, SampleDepth deepest,
                 Picture& picture, ProgressBar& bar);

}  // namespace orv::cli
