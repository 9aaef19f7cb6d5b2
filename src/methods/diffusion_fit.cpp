#include "methods/diffusion_fit.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"
#include "methods/working_planes.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

/// More steps than this hardly come nearer to the exact flow.
constexpr double kMostSteps = 64.0;

void chooseSteps(const DiffusionFit& fit, Arguments& arguments) {
    const double tau = arguments.real("tau");
    const bool byTau = arguments.isGiven("tau") && tau > 0.0;
    arguments.choose("steps", byTau ? std::clamp(std::round(fit.time / tau), 1.0, kMostSteps)
                                    : static_cast<double>(fit.steps));
    const int steps = arguments.integer("steps");
    arguments.choose("tau", fit.time / std::max(1, steps));
}

/// Whether a step holds an explicit half, which overshoots at the tau of a fit.
bool isHalfExplicit(int scheme) {
    return scheme == kSchemeAdi || scheme == kSchemeAmos || scheme == kScheme2DImplicit;
}

}  // namespace

double workingDeviation(const NoiseToRemove& noise, const Arguments& arguments) {
    const bool opponent = noise.colour && arguments.integer("colours") == OpponentColours;
    return opponent ? noise.brightness : noise.channel;
}

void chooseWorkingPlanes(const NoiseToRemove& noise, Arguments& arguments) {
    if (!noise.colour) {
        return;
    }
    arguments.choose("colours", OpponentColours);
    if (arguments.integer("colours") == OpponentColours) {
        arguments.choose("chroma", noise.chroma);
    }
}

void chooseDiffusion(const NoiseToRemove& noise, const DiffusionFit& fit,
                     Arguments& arguments) {
    arguments.choose("scheme", fit.scheme);
    if (isHalfExplicit(arguments.integer("scheme"))) {
        arguments.choose("substeps", 1.0);
    }
    arguments.choose("flow", fit.flow);
    chooseSteps(fit, arguments);
    arguments.choose("sigma", fit.sigma);
    arguments.choose("border", MirroredBorder);
    chooseWorkingPlanes(noise, arguments);
    arguments.choose("contrast", fit.contrast * workingDeviation(noise, arguments));
}

void chooseNothing(Arguments& arguments) {
    arguments.choose("steps", 0);
    arguments.choose("shrinkage", 0.0);
}

}  // namespace orv
