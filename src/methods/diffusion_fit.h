#pragma once

#include "methods/automatic.h"

namespace orv {

/// A diffusion that suits noise, fitted to photos.
struct DiffusionFit {
    int scheme = 0;
    int flow = 0;
    int steps = 1;
    double time = 0.0;      ///< all time steps together, pixels^2
    double sigma = 0.0;     ///< pixels
    double contrast = 0.0;  ///< as a multiple of the deviation of the noise
};

/// The deviation of the noise in the first of the planes that the method works on: brightness
/// where `--colours opponent` stands in the arguments, else a channel.
double workingDeviation(const NoiseToRemove& noise, const Arguments& arguments);

/// Chooses the planes to work on, and how the noise of the colour planes compares.
void chooseWorkingPlanes(const NoiseToRemove& noise, Arguments& arguments);

/// Chooses scheme, flow, steps, tau, sigma, contrast, the planes and the border.
void chooseDiffusion(const NoiseToRemove& noise, const DiffusionFit& fit, Arguments& arguments);

/// The noise to choose by: where there is none and the user asks for diffusion by a parameter of
/// it, that of one grey level.
NoiseToRemove noiseFor(const NoiseToRemove& noise, const Arguments& arguments);

/// Chooses no time steps and no shrinkage: what leaves a picture as it is.
void chooseNothing(Arguments& arguments);

}  // namespace orv
