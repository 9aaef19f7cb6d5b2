#pragma once

#include "images/real_image.h"
#include "operators/shock/shock_term.h"

namespace orv {

/// How a shock filter moves: its term, its steps and their length.
struct ShockMotion {
    ShockTerm& term;
    int iterations;
    double timeStep;
    bool numbersSteps;  ///< whether the term hears the number of each step of a whole plane
};

/// All steps over a whole plane.
///
///     target = target + timeStep value(work), limited to 0 and 255;   work = target
///
/// in the interior; the outermost ring isn't touched. The first step computes its speeds on the
/// source.
///
/// Shapes:  source and target of one size and not one plane.
/// Fails:   never; ends early when the work is cancelled.
/// Cost:    a pass a step. A term that the kernels know needs no work plane: two columns of
///          old samples follow the pass.
void runShock(const ShockMotion& motion, const RealImage& source, RealImage& target);

/// All steps over the samples of a region list. The term hears no number of a step.
///
/// Shapes:  work holds what the speeds are computed on and takes over each step's region.
/// Quirk:   masked-shock-softness
void runShockRegion(const ShockMotion& motion, const DiscreteImage& mask, int count,
                    const int* xs, const int* ys, RealImage& work, RealImage& target);

}  // namespace orv
