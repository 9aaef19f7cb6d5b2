#include "methods/automatic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace orv {

namespace {

/// Rounding to bytes and the texture of clean photos pass for noise of this deviation and more.
constexpr double kTextureFloor = 0.7;
/// Deviation of the mean of three channels, 1 / sqrt(3).
constexpr double kMeanOfThree = 0.57735026918962576;

double lessTexture(double deviation) {
    return std::sqrt(std::max(0.0, deviation * deviation - kTextureFloor * kTextureFloor));
}

std::string oneDecimal(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

}  // namespace

std::vector<Parameter> offeredParameters(const Method& method) {
    std::vector<Parameter> offered;
    if (method.choose != nullptr) {
        offered.push_back(kStrengthParameter);
        // By itself a method that is automatic anyway needs no switch, but one who asks gets it.
        offered.push_back(method.automatic ? rare(kAutoParameter) : kAutoParameter);
    }
    offered.insert(offered.end(), method.parameters.begin(), method.parameters.end());
    return offered;
}

double deviationOfStrength(double strength) {
    return 0.5 * strength;
}

double strengthOf(const NoiseEstimate& estimate) {
    return std::min(100.0, 2.0 * estimate.overall());
}

NoiseToRemove noiseOfStrength(double strength, bool colour) {
    NoiseToRemove noise;
    noise.channel = deviationOfStrength(strength);
    noise.brightness = colour ? kMeanOfThree * noise.channel : noise.channel;
    noise.chroma = 1.0;
    noise.colour = colour;
    return noise;
}

NoiseToRemove noiseOfEstimate(const NoiseEstimate& estimate) {
    NoiseToRemove noise;
    noise.colour = estimate.channels.size() == 3;
    noise.channel = lessTexture(estimate.overall());
    noise.brightness = lessTexture(estimate.brightness);
    noise.chroma =
        noise.brightness > 0.0 ? lessTexture(estimate.chroma) / noise.brightness : 0.0;
    return noise;
}

AutomaticChoice chooseAutomatically(const Method& method, const Planes& planes,
                                    std::optional<double> strength, Arguments& arguments) {
    AutomaticChoice choice;
    if (strength.has_value()) {
        choice.strength = *strength;
        method.choose(noiseOfStrength(*strength, planes.size() == 3), arguments);
        return choice;
    }
    choice.measured = true;
    choice.noise = estimateNoise(planes);
    choice.strength = strengthOf(choice.noise);
    method.choose(noiseOfEstimate(choice.noise), arguments);
    return choice;
}

std::string noiseText(const NoiseEstimate& estimate) {
    constexpr std::array<const char*, 3> kNames{"red", "green", "blue"};
    std::string text = "noise " + oneDecimal(estimate.overall()) + " grey levels";
    for (std::size_t c = 0; estimate.channels.size() == 3 && c < 3; ++c) {
        text += std::string(c == 0 ? " (" : ", ") + kNames[c] + " " +
                oneDecimal(estimate.channels[c]) + (c == 2 ? ")" : "");
    }
    return text;
}

}  // namespace orv
