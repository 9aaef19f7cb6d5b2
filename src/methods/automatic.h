#pragma once

#include <optional>
#include <string>
#include <vector>

#include "methods/method.h"
#include "methods/noise_estimate.h"

namespace orv {

/// The noise that a method is to remove, in grey levels.
struct NoiseToRemove {
    double channel = 0.0;     ///< deviation in each channel, quadratic mean
    double brightness = 0.0;  ///< deviation in the brightness plane of `--colours opponent`
    double chroma = 0.0;      ///< that of the colour planes as a multiple of it
    bool colour = false;      ///< whether the picture has three planes
};

/// The one knob of automation. It is no parameter of a method but stands for several of them:
/// Method::choose turns it into values that Arguments::commandText() shows, so a run needs the
/// ordinary parameters alone and can be repeated from them. Clients offer it, and the switch
/// below, for every method whose `choose` isn't null.
inline constexpr Parameter kStrengthParameter =
    real("strength", "", 0.0, 0.0, 100.0, "noise to remove, twice its deviation in grey levels",
         "smooths more");
inline constexpr Parameter kAutoParameter =
    flag("auto", false, "measure the noise and choose all parameters that are not given");

/// What a client offers for a method: its parameters, after the knob and the switch.
std::vector<Parameter> offeredParameters(const Method& method);

/// The deviation that a strength stands for: half of it.
double deviationOfStrength(double strength);

/// The strength of a measured picture: twice the mean deviation, at most 100.
double strengthOf(const NoiseEstimate& estimate);

/// Noise of this strength that is equal and independent in all channels.
NoiseToRemove noiseOfStrength(double strength, bool colour);

/// The noise that was measured, less what the texture of clean photos passes for.
NoiseToRemove noiseOfEstimate(const NoiseEstimate& estimate);

/// What automation found and did.
struct AutomaticChoice {
    bool measured = false;  ///< false when the strength was given
    NoiseEstimate noise;    ///< empty unless measured
    double strength = 0.0;  ///< 0 to 100, given or from the measurement
};

/// Chooses all parameters that are still open in `arguments`.
///
/// The measurement is made only when no strength is given; with one the choice is the same for
/// every picture of as many planes. A strength of 0 changes no sample.
///
/// Domain:  a method whose `choose` isn't null; 1 or 3 planes.
AutomaticChoice chooseAutomatically(const Method& method, const Planes& planes,
                                    std::optional<double> strength, Arguments& arguments);

/// What was measured in words: "noise 7.2 grey levels (red 7.0, green 7.1, blue 7.5)".
std::string noiseText(const NoiseEstimate& estimate);

}  // namespace orv
