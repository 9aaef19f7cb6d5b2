#pragma once

#include <functional>
#include <memory>

#include "methods/method.h"
#include "operators/float_plane_image_operator.h"

namespace orv {

/// One time step of a diffusion operator, on one plane or on three.
struct DiffusionStep {
    std::function<std::unique_ptr<FloatImage>(const FloatImage&)> onePlane;
    std::function<std::unique_ptr<FloatImage3>(const FloatImage3&)> threePlanes;
};

/// A step around a fresh operator, which keeps nothing from the step before.
template <typename Operator>
DiffusionStep stepOf(std::shared_ptr<Operator> op) {
    return {[op](const FloatImage& plane) { return op->runPlane(plane); },
            [op](const FloatImage3& planes) { return op->runPlanes(planes, nullptr); }};
}

/// What forbids a diffusion run with these arguments on planes of this size, in words; empty
/// when nothing does.
///
/// Shapes:  the arguments scheme, solver, tau; `substeps` says whether explicit half steps are
///          split.
std::string diffusionRefusal(const Arguments& arguments, bool substeps, int width, int height);

/// Makes the operator of a step with this contrast.
using StepMaker = std::function<DiffusionStep(double contrast)>;

/// Runs `arguments.integer("steps")` time steps and clamps the result once, at the end.
///
/// Each step starts from the unclamped result of the one before and has an operator of its own.
/// In `--colours opponent` each plane runs by itself, the two of colour with `--chroma` times
/// the contrast. A share of wavelet shrinkage of the source is mixed in where the method has
/// `--shrinkage` and it is above 0:
///
///     result = (1 - shrinkage) diffused + shrinkage shrunk
///
/// The C face's progress window is left as it was found; a host's callback isn't called.
///
/// Shapes:  `planes` 1 or 3 of one size, else refused.
/// Fails:   as Method::run tells.
/// Cost:    with three planes of n samples about 9 n floats at the same time.
MethodResult runDiffusion(Planes planes, const Arguments& arguments, bool substeps,
                          const StepMaker& makeStep, const Progress& progress);

}  // namespace orv
