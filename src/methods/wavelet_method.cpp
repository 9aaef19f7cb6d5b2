#include "methods/wavelet_method.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "methods/diffusion_fit.h"
#include "methods/plane_run.h"
#include "methods/shrinkage_run.h"
#include "methods/working_planes.h"
#include "operators/thin/wavelet_denoising_operator.h"

namespace orv {

namespace {

constexpr int kMirror = 0;
constexpr int kZero = 1;

constexpr std::array<Choice, 3> kRules{{
    {"sure", 0, "a threshold a band, where its estimated risk is least; keeps most detail"},
    {"visu", 1, "one threshold that noise hardly ever exceeds; smoothest, loses fine detail"},
    {"brownian", 2, "removes coefficients until the rest of a band passes as noise"},
}};

constexpr std::array<Choice, 6> kWavelets{{
    {"daubechies6", 0, "Daubechies, orthonormal, 6 taps"},
    {"haar", 1, "Haar, 2 taps; fastest, leaves square patches"},
    {"5/3", 2, "biorthogonal, 5 and 3 taps"},
    {"9/7", 3, "biorthogonal, 9 and 7 taps; smooth and well localised"},
    {"13/11", 4, "biorthogonal, 13 and 11 taps; smoothest"},
    {"9/3", 5, "biorthogonal, 9 and 3 taps"},
}};

constexpr std::array<Choice, 2> kExtensions{{
    {"mirror", kMirror, "by mirroring, which keeps borders and finds the noise"},
    {"zero", kZero, "by zeros, as the C function does; dims borders, finds too little noise"},
}};

std::span<const Choice> ruleChoices() {
    return kRules;
}

std::span<const Choice> waveletChoices() {
    return kWavelets;
}

std::span<const Choice> extensionChoices() {
    return kExtensions;
}

constexpr std::array<Parameter, 8> kParameters{
    choice("rule", 0, ruleChoices, "how the threshold of a band is chosen"),
    numberedChoice("wavelet", 3, waveletChoices, "the filters, by name or number"),
    integer("levels", "levels", 0, 0, 30,
            "how often the picture is halved; 0 takes as many as fit", "reaches coarser noise"),
    choice("extend", kMirror, extensionChoices,
           "how the picture is extended to sizes that can be halved"),
    real("noise", "grey levels", -1.0, -1.0, 255.0, kNoiseHelp, "removes more"),
    rare(integer("shifts", "shifts", 1, 1, kMostShifts, kShiftsHelp,
                 "leaves fewer ripples and takes longer")),
    rare(choice("colours", RgbColours, workingColoursChoices, kColoursHelp)),
    rare(real("chroma", "", 1.0, 0.0, 100.0, kChromaHelp, "removes more from colour")),
};

constexpr std::array<std::string_view, 3> kNotes{
    "The noise is measured in the picture, so no strength has to be given.",
    "--extend zero is what the C function does: it dims borders and finds too little noise.",
    "haar takes pictures from 4 x 4 pixels, daubechies6 and 5/3 from 8 x 8, the others from "
    "16 x 16.",
};

constexpr std::array<std::string_view, 3> kLiterature{
    "Donoho, Johnstone: Ideal spatial adaptation by wavelet shrinkage, 1994",
    "Donoho, Johnstone: Adapting to unknown smoothness via wavelet shrinkage, 1995",
    "Ogden, Parzen: Data dependent wavelet thresholding in nonparametric regression with "
    "change-point applications, 1996",
};

/// The shortest side of a square that the wavelet can halve once, a power of two.
int shortestSide(const WaveletDenoisingOperator& op) {
    int side = 1;
    while (op.levelLimit(side, side, /*mirrored=*/true) < 1) {
        side *= 2;
    }
    return side;
}

std::string sizeText(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::string levelsRefusal(int levels, int most, int shortest, std::string_view wavelet,
                          const FloatImage& plane) {
    const std::string size = sizeText(plane.width(), plane.height());
    if (most < 1) {
        return "--wavelet: " + std::string(wavelet) + " takes at least " +
               sizeText(shortest, shortest) + " pixels, this picture has " + size +
               "; haar takes the smallest, 4 x 4";
    }
    if (levels <= most) {
        return {};
    }
    const std::string range = most == 1 ? "1 alone" : "1 to " + std::to_string(most);
    return "--levels: " + std::to_string(levels) + " is too many for " + size +
           " pixels and the wavelet " + std::string(wavelet) + ", which allow " + range;
}

/// One plane after another, so that the doubles of one alone are held.
Planes denoised(Planes planes, const Arguments& arguments) {
    const bool opponent = planes.size() == 3 && arguments.integer("colours") == OpponentColours;
    Shrinkage shrinkage;
    shrinkage.rule = arguments.integer("rule");
    shrinkage.levels = arguments.integer("levels") > 0 ? arguments.integer("levels") : -1;
    shrinkage.wavelet = arguments.integer("wavelet");
    shrinkage.mirrored = arguments.integer("extend") == kMirror;
    shrinkage.noise = arguments.real("noise");
    shrinkage.shifts = arguments.integer("shifts");
    if (shrinkage.noise == 0.0) {
        reportWork(1, 1);
        return planes;
    }
    if (opponent) {
        turnToOpponent(planes);
    }
    for (std::size_t c = 0; c < planes.size() && !workCancelled(); ++c) {
        const WorkSlice slice(static_cast<int>(c), static_cast<int>(planes.size()));
        if (c == 1 && opponent && shrinkage.noise > 0.0) {
            shrinkage.noise *= arguments.real("chroma");
        }
        planes[c] = shrunkPlane(*planes[c], shrinkage);
        reportWork(1, 1);
    }
    if (opponent) {
        turnToRgb(planes);
    }
    return planes;
}

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        const FloatImage& plane = *planes[0];
        const WaveletDenoisingOperator op(arguments.integer("rule"), -1,
                                          arguments.integer("wavelet"));
        refusal = levelsRefusal(arguments.integer("levels"),
                                op.levelLimit(plane.width(), plane.height(),
                                              arguments.integer("extend") == kMirror),
                                shortestSide(op), arguments.choiceName("wavelet"), plane);
    }
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    return runPlaneWork(std::move(planes), progress,
                        [&](Planes source) { return denoised(std::move(source), arguments); });
}

void choose(const NoiseToRemove& noise, Arguments& arguments) {
    if (noise.channel <= 0.0 || noise.brightness <= 0.0) {
        arguments.choose("noise", 0.0);
        return;
    }
    chooseWorkingPlanes(noise, arguments);
    arguments.choose("shifts", 8);
    arguments.choose("noise", workingDeviation(noise, arguments));
}

}  // namespace

constinit const Method kWaveletMethod{
    .name = "wavelet",
    .summary = "Remove noise by shrinking the wavelet coefficients of a picture",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .choose = choose,
    .notes = kNotes,
    .example = "orv wavelet noisy.jpg clean.jpg --rule sure",
};

}  // namespace orv
