#include "wavelets/shrinkage/brownian_shrink.h"

#include <algorithm>
#include <array>
#include <memory>

#include "base/text_output.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "wavelets/shrinkage/brownian_threshold.h"
#include "wavelets/shrinkage/coefficient_bands.h"
#include "wavelets/shrinkage/shrink_band.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {

namespace {

constexpr int kRows = 17;
constexpr int kColumns = 8;
constexpr int kLargestSide = 512;

// Significance levels, then a row of critical values for each, for band sides 4, 8, ... 512.
constexpr std::array<float, kRows + kRows * kColumns> kCriticalValues{
    0.999f,  0.99f,   0.95f,   0.9f,    0.8f,    0.7f,    0.6f,    0.5f,    0.4f,    0.3f,
    0.2f,    0.1f,    0.05f,   0.025f,  0.01f,   0.005f,  0.001f,  0.1733f, 0.4248f, 0.6160f,
    0.7463f, 0.8292f, 0.8777f, 0.9138f, 0.9394f, 0.2720f, 0.5432f, 0.7412f, 0.8656f, 0.9411f,
    0.9937f, 1.0312f, 1.0512f, 0.3962f, 0.6832f, 0.8767f, 0.9966f, 1.0714f, 1.1244f, 1.1586f,
    1.1816f, 0.4827f, 0.7745f, 0.9604f, 1.0798f, 1.1524f, 1.2048f, 1.2391f, 1.2619f, 0.6107f,
    0.8987f, 1.0775f, 1.1922f, 1.2655f, 1.3168f, 1.3522f, 1.3738f, 0.7186f, 1.0009f, 1.1751f,
    1.2862f, 1.3568f, 1.4089f, 1.4438f, 1.4671f, 0.8227f, 1.0969f, 1.2674f, 1.3742f, 1.4413f,
    1.4960f, 1.5309f, 1.5533f, 0.9333f, 1.1962f, 1.3582f, 1.4622f, 1.5291f, 1.5850f, 1.6192f,
    1.6401f, 1.0591f, 1.3044f, 1.4565f, 1.5580f, 1.6245f, 1.6780f, 1.7139f, 1.7348f, 1.2067f,
    1.4286f, 1.5691f, 1.6671f, 1.7317f, 1.7848f, 1.8208f, 1.8440f, 1.4022f, 1.5873f, 1.7102f,
    1.8068f, 1.8703f, 1.9211f, 1.9563f, 1.9773f, 1.7174f, 1.8333f, 1.9274f, 2.0120f, 2.0743f,
    2.1228f, 2.1633f, 2.1763f, 2.0137f, 2.0524f, 2.1250f, 2.1915f, 2.2539f, 2.3038f, 2.3415f,
    2.3570f, 2.2973f, 2.2611f, 2.3003f, 2.3616f, 2.4166f, 2.4668f, 2.5032f, 2.5162f, 2.6717f,
    2.5214f, 2.5167f, 2.5620f, 2.6092f, 2.6752f, 2.6986f, 2.7060f, 2.9615f, 2.7098f, 2.6698f,
    2.7048f, 2.7278f, 2.8098f, 2.8363f, 2.8427f, 3.6501f, 3.1201f, 3.0210f, 3.0192f, 3.0158f,
    3.1021f, 3.1318f, 3.1581f,
};

/// The copy's values divided by a noise other than 0, as the band's own are.
void divideBand(RealImage& band, double noise) {
    if (noise != 0.0) {
        band.divide(noise);
    }
}

void shrinkLevel(CoefficientBands& bands, int level, int row, double noise, bool verbose) {
    const int w = bands.width() / power2(level);
    const int h = bands.height() / power2(level);
    const float critical = criticalValue(row, floorLog2(std::min(w, kLargestSide)) - 2);
    if (verbose) {
        printText("Critical Point for level %d = %g\n", level, static_cast<double>(critical));
    }
    for (int detail = 0; detail < 3; ++detail) {
        if (!reportWork(3 * (level - 1) + detail, 3 * bands.levels())) {
            return;
        }
        double threshold = 0.0;
        {
            const std::unique_ptr<RealImage> band = bands.wholeBand(level, detail);
            divideBand(*band, noise);
            threshold = brownianThreshold(*band, h, w, critical);
        }
        const long long tossed = shrinkView(bands.band(level, detail), noise, threshold);
        if (verbose) {
            printShrinkage(level, detail, threshold, tossed);
        }
    }
}

}  // namespace

int criticalRow(float alpha) {
    for (int row = 0; row < kRows; ++row) {
        if (tableAlpha(row) <= alpha) {
            return row;
        }
    }
    return kRows - 1;
}

float tableAlpha(int row) {
    return kCriticalValues[static_cast<std::size_t>(row)];
}

float criticalValue(int row, int column) {
    // quirk: critical-column
    return kCriticalValues[static_cast<std::size_t>(kRows + kColumns * row + column)];
}

void brownianShrink(CoefficientBands& bands, float alpha, bool verbose) {
    if (verbose) {
        printText("Brownian Process Shrinkage, 2D\n");
    }
    if (bands.height() != bands.width()) {
        printText("WARNING: Rows != Cols.  Results may not be meaningful!\n");
    }
    const double noise = bands.noise();
    if (verbose) {
        printText("Noise estimate = %g\n", noise);
    }
    const int row = criticalRow(alpha);
    printText("Alpha from table is %g\n", static_cast<double>(tableAlpha(row)));
    for (int level = 1; level <= bands.levels() && !workCancelled(); ++level) {
        shrinkLevel(bands, level, row, noise, verbose);
    }
    roundRest(bands, noise);
}

void BrownianShrink2D(RealImage& coefficients, int height, int width, int levels, float alpha,
                      bool verbose) {
    PlaneBands bands(coefficients, height, width, levels);
    brownianShrink(bands, alpha, verbose);
}

}  // namespace orv
