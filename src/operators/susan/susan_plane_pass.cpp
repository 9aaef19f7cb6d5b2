#include "operators/susan/susan_plane_pass.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "base/rounding.h"
#include "exports/work_window.h"
#include "operators/susan/susan_strips.h"

namespace orv {

namespace {

constexpr int kLines = 2 * kSusanReach + 1;

SusanPlaneWeights weightsOf(const SusanMask& mask, double inverse) {
    SusanPlaneWeights weights{};
    weights.inverse = inverse;
    for (int k = 0; k < mask.size; ++k) {
        const int x = mask.xs[k];
        const int y = mask.ys[k];
        if (y >= -kSusanReach && y <= kSusanReach) {
            weights.spatial[x * x + y * y] = mask.weights[k];
        }
    }
    return weights;
}

float towardZero(double value) {
    const float nearest = toFloat(value);
    return std::fabs(static_cast<double>(nearest)) > std::fabs(value)
               ? std::nextafterf(nearest, 0.0f)
               : nearest;
}

void writeNearBorder(const SusanMask& mask, double inverse, const FloatImage& from,
                     FloatImage& to, int x, int begin, int end) {
    for (int y = begin; y < end; ++y) {
        const double value = susanValue(
            mask, x, y, from.width(), from.height(),
            [&](int nx, int ny) { return static_cast<double>(from.row(nx)[ny]); },
            [&](double difference) { return susanSimilarity(difference, inverse); });
        to.row(x)[y] = towardZero(value);
    }
}

/// The samples whose mask leaves the plane somewhere.
void writeBorder(const SusanMask& mask, double inverse, const FloatImage& from, FloatImage& to,
                 bool hasInside) {
    const int width = from.width();
    const int height = from.height();
    for (int x = 0; x < width && !workCancelled(); ++x) {
        if (!hasInside || x < kSusanReach || x >= width - kSusanReach) {
            writeNearBorder(mask, inverse, from, to, x, 0, height);
            continue;
        }
        writeNearBorder(mask, inverse, from, to, x, 0, kSusanReach);
        writeNearBorder(mask, inverse, from, to, x, height - kSusanReach, height);
    }
}

}  // namespace

void susanPlanePass(const SusanMask& mask, double inverse, const FloatImage& from,
                    FloatImage& to) {
    const bool hasInside = from.width() >= kLines && from.height() >= kLines;
    writeBorder(mask, inverse, from, to, hasInside);
    if (!hasInside) {
        return;
    }

    const SusanPlaneWeights weights = weightsOf(mask, inverse);
    const SusanKernels& kernels = susanKernels();
    const SusanInside inside = {from.width(), from.height(), /*stride=*/1};
    constexpr int kStrip = SusanStrip<double>::kStrip;
    const int columns = from.width() - 2 * kSusanReach;
    const int strips = (from.height() - 2 * kSusanReach + kStrip - 1) / kStrip;
    int done = 0;
    runSusanStrips<double>(
        inside,
        [&](int x, int first, int count, double* samples) {
            std::copy_n(from.row(x) + first, count, samples);
        },
        [&](const double* const* lines, int count, double* slot) {
            kernels.planeWeights(lines, count, weights, slot);
        },
        [&](int x, int first, int count, const double* const* lines,
            const double* const* slots) {
            if (!reportLine(done++, columns * strips)) {
                return false;
            }
            kernels.planeColumn(lines, slots, count, to.row(x) + first);
            return true;
        });
}

}  // namespace orv
