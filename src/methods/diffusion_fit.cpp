#include "methods/diffusion_fit.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "methods/automatic.h"
#include "methods/working_planes.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

/// Parameters by which a user asks for diffusion, whatever the noise.
constexpr std::array<std::string_view, 4> kDiffusionNames{"tau", "steps", "sigma", "contrast"};
/// What is removed from a picture without noise when diffusion is asked for: one grey level.
constexpr double kLeastStrength = 2.0;

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
    arguments.choose("steps", fit.steps);
    arguments.choose("tau", fit.time / fit.steps);
    arguments.choose("sigma", fit.sigma);
    arguments.choose("border", MirroredBorder);
    chooseWorkingPlanes(noise, arguments);
    arguments.choose("contrast", fit.contrast * workingDeviation(noise, arguments));
}

NoiseToRemove noiseFor(const NoiseToRemove& noise, const Arguments& arguments) {
    const bool asked =
        std::any_of(kDiffusionNames.begin(), kDiffusionNames.end(), [&](std::string_view name) {
            return arguments.isGiven(name) && arguments.real(name) > 0.0;
        });
    if (!asked || (noise.channel > 0.0 && noise.brightness > 0.0)) {
        return noise;
    }
    return noiseOfStrength(kLeastStrength, noise.colour);
}

void chooseNothing(Arguments& arguments) {
    arguments.choose("steps", 0);
    arguments.choose("shrinkage", 0.0);
}

}  // namespace orv
