#include "methods/memory_need.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "methods/blur_extension.h"
#include "methods/shrinkage_run.h"
#include "methods/working_planes.h"
#include "operators/diffusion/scheme_table.h"
#include "operators/thin/wavelet_denoising_operator.h"

// The factors of the formulas are bytes a sample, as measured by scripts/measure_memory.py: 4 for
// each float plane and 8 for each plane of doubles that live at the same time.

namespace orv {

namespace {

constexpr double kFloat = 4.0;
constexpr double kDouble = 8.0;
/// The most samples that shifts of the wavelets put before a line.
constexpr int kLongestShift = 7;
/// Strips of lines, borders and the tables of a run, whatever the size of the picture.
constexpr double kFixedBytes = 4.0e6;

double samplesOf(const PlanesSize& size) {
    return static_cast<double>(size.width) * size.height;
}

/// The samples of a plane with a mirrored margin of six sigma around it.
double withMargin(const PlanesSize& size, double sigma) {
    const double margin = std::ceil(6.0 * sigma) + 3.0;
    return (size.width + 2.0 * margin) * (size.height + 2.0 * margin);
}

/// Planes of floats that come in, and one plane at a time with its margin in `bytes` a sample.
double blurBytes(const Arguments& arguments, const PlanesSize& size, double bare,
                 double mirrored) {
    const double n = samplesOf(size);
    const bool mirror = arguments.integer("extend") == ExtendByMirror;
    const double work =
        mirror ? mirrored * withMargin(size, arguments.real("sigma")) : bare * n;
    return kFloat * size.planes * n + work;
}

/// Source and result in doubles, and one float plane on its way out; a grey source stays, too.
double realOperatorBytes(const PlanesSize& size) {
    const double n = samplesOf(size);
    return size.planes == 1 ? (2.0 * kFloat + 2.0 * kDouble) * n : (6.0 * kDouble + kFloat) * n;
}

double retinexBytes(const Arguments& arguments, const PlanesSize& size) {
    // Each level has a quarter of the samples of the one before, and needs a second plane.
    const double pyramid = arguments.integer("levels") == 1 ? 0.0 : 3.6 * samplesOf(size);
    return realOperatorBytes(size) + pyramid;
}

double powerOfTwoFrom(int n) {
    double power = 1.0;
    while (power < n) {
        power *= 2.0;
    }
    return power;
}

/// What it takes to shrink one plane, the plane itself left out.
double shrinkageBytes(const Shrinkage& shrinkage, const PlanesSize& size) {
    // The extended plane, its bands, and the sorted coefficients of the largest band.
    constexpr double kBands = 2.0 * kDouble + 2.0;
    const bool shifted = shrinkage.shifts > 1;
    const int width = size.width + (shifted ? kLongestShift : 0);
    const int height = size.height + (shifted ? kLongestShift : 0);
    const double n = static_cast<double>(width) * height;
    double extended = n;
    if (shrinkage.mirrored) {
        const WaveletDenoisingOperator op(shrinkage.rule, -1, shrinkage.wavelet);
        const int fit = std::max(op.levelLimit(width, height, /*mirrored=*/true), 0);
        const int wanted = shrinkage.levels;
        const double block = std::ldexp(1.0, wanted > 0 ? std::min(wanted, fit) : fit);
        extended = powerOfTwoFrom(std::max(width, height)) *
                   std::ceil(std::min(width, height) / block) * block;
    }
    const double sums = shifted ? kDouble + kFloat : 0.0;
    return (sums + kDouble) * n + kBands * extended;
}

double waveletBytes(const Arguments& arguments, const PlanesSize& size) {
    constexpr int kMirror = 0;
    Shrinkage shrinkage;
    shrinkage.rule = arguments.integer("rule");
    shrinkage.levels = arguments.integer("levels");
    shrinkage.wavelet = arguments.integer("wavelet");
    shrinkage.mirrored = arguments.integer("extend") == kMirror;
    shrinkage.shifts = arguments.integer("shifts");
    return kFloat * size.planes * samplesOf(size) + shrinkageBytes(shrinkage, size);
}

double recolorBytes(const Arguments& arguments, const PlanesSize& size,
                    const PlanesSize& second) {
    const double n = samplesOf(size);
    const double kept = arguments.real("strength") < 1.0 ? kFloat * size.planes * n : 0.0;
    const double learning =
        kFloat * size.planes * n + (3.0 * kDouble + kFloat) * samplesOf(second);
    return std::max(learning, (6.0 * kDouble + kFloat) * n + kept);
}

double colorizeBytes(const PlanesSize& size, const PlanesSize& second) {
    const double n = samplesOf(size);
    const double learning =
        kFloat * size.planes * n + (3.0 * kDouble + kFloat) * samplesOf(second);
    return std::max(learning, (3.0 * kDouble + 2.0 * kFloat) * n);
}

double diffusionBytes(const Arguments& arguments, const PlanesSize& size) {
    constexpr int kThomas = 0;
    constexpr double kLeastSigma = 0.05;
    const double n = samplesOf(size);
    const int scheme = arguments.integer("scheme");
    const int solver = arguments.integer("solver");
    // Source and result of all planes at once or of one after another, and the diffusivity of
    // one; a blur has one plane more.
    const bool together = arguments.integer("colours") == RgbColours;
    double planes = size.planes + (together ? size.planes : 1.0) + 1.1;
    planes += arguments.real("sigma") > kLeastSigma ? 1.0 : 0.0;
    if (!isUnsplitScheme(scheme)) {
        planes += scheme == kSchemeAos ? 0.0 : 1.0;
        return kFloat * planes * n;
    }
    // Two matrices of five diagonals, the right side and the solution; half explicit, a third
    // matrix with what it multiplies.
    planes += scheme == kScheme2DImplicit ? 20.0 : 11.0;
    planes += solver == kThomas ? 2.0 * size.width + 1.0 + 6.0
                                : solverVectors(solver, arguments.integer("solver-iterations"));
    return kFloat * planes * n;
}

/// Diffusion, after shrinkage where that has a share in the result; the shrunk planes wait.
double restoreBytes(const Arguments& arguments, const PlanesSize& size) {
    const double share = arguments.real("shrinkage");
    const double diffusion = diffusionBytes(arguments, size);
    if (share == 0.0) {
        return diffusion;
    }
    Shrinkage shrinkage;
    shrinkage.shifts = arguments.integer("shifts");
    const double planes = kFloat * size.planes * samplesOf(size);
    const double shrinking =
        2.0 * planes - kFloat * samplesOf(size) + shrinkageBytes(shrinkage, size);
    return std::max(shrinking, share < 1.0 ? planes + diffusion : 0.0);
}

double deblurBytes(const Arguments& arguments, const PlanesSize& size) {
    const double work = arguments.integer("keep-observed") != 0 ? 1.1 : 2.1;
    return kFloat * (2.0 * size.planes + work) * samplesOf(size);
}

double methodBytes(std::string_view name, const Arguments& arguments, const PlanesSize& size,
                   const PlanesSize& second) {
    const double n = samplesOf(size);
    if (name == "restore" || name == "denoise") {
        return restoreBytes(arguments, size);
    }
    if (name == "wavelet") {
        return waveletBytes(arguments, size);
    }
    if (name == "retinex") {
        return retinexBytes(arguments, size);
    }
    if (name == "shock") {
        return realOperatorBytes(size);
    }
    if (name == "blur") {
        return blurBytes(arguments, size, 0.1, kDouble);
    }
    if (name == "homomorphic") {
        return blurBytes(arguments, size, 2.0 * kDouble, 2.0 * kDouble);
    }
    if (name == "deblur") {
        return deblurBytes(arguments, size);
    }
    if (name == "susan") {
        const double work = arguments.integer("passes") > 1 ? 1.0 : 0.0;
        return kFloat * (2.0 * size.planes + work) * n;
    }
    if (name == "curvature") {
        // Three planes in doubles and one that they become; else one after another.
        return arguments.choiceName("flow") == "full-color-beltrami"
                   ? (3.0 * kDouble + kFloat) * n
                   : (kFloat * size.planes + kDouble + kFloat) * n;
    }
    if (name == "recolor") {
        return recolorBytes(arguments, size, second);
    }
    return name == "colorize" ? colorizeBytes(size, second) : -1.0;
}

}  // namespace

double solverVectors(int solver, int solverIterations) {
    struct Need {
        unsigned char vectors;
        unsigned char perIteration;
    };
    // In the order of the solver catalogue.
    static constexpr std::array<Need, 42> kNeeds{
        {{0, 0},  {1, 0},  {0, 0},  {0, 0},  {2, 0},  {4, 0}, {2, 0},  {3, 0},  {4, 0},
         {4, 0},  {4, 0},  {4, 0},  {4, 0},  {7, 0},  {6, 0}, {5, 0},  {10, 0}, {6, 0},
         {6, 0},  {7, 0},  {7, 0},  {9, 0},  {9, 0},  {7, 0}, {4, 1},  {3, 2},  {3, 1},
         {9, 2},  {8, 2},  {5, 2},  {10, 2}, {6, 0},  {4, 0}, {19, 0}, {20, 0}, {24, 0},
         {27, 0}, {19, 0}, {20, 0}, {24, 0}, {27, 0}, {19, 0}}};
    const auto index = static_cast<std::size_t>(solver);
    if (solver < 0 || index >= kNeeds.size()) {
        return 0.0;
    }
    return kNeeds[index].vectors +
           static_cast<double>(kNeeds[index].perIteration) * solverIterations;
}

double peakBytes(const Method& method, const Arguments& arguments, const PlanesSize& size,
                 const PlanesSize& second) {
    const double bytes = methodBytes(method.name, arguments, size, second);
    return bytes < 0.0 ? 0.0 : bytes + kFixedBytes;
}

}  // namespace orv
