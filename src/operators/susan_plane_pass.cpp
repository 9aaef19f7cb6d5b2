#include "operators/susan_plane_pass.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "base/rounding.h"
#include "exports/work_window.h"
#include "operators/kernels/susan_kernels.h"

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

}  // namespace

void susanPlanePass(const SusanMask& mask, double inverse, const FloatImage& from,
                    FloatImage& to) {
    const SusanPlaneWeights weights = weightsOf(mask, inverse);
    const SusanKernels& kernels = susanKernels();
    const int width = from.width();
    const int height = from.height();
    const bool hasInside = width >= kLines && height >= kLines;

    for (int x = 0; x < width && reportLine(x, width); ++x) {
        if (!hasInside || x < kSusanReach || x >= width - kSusanReach) {
            writeNearBorder(mask, inverse, from, to, x, 0, height);
            continue;
        }
        writeNearBorder(mask, inverse, from, to, x, 0, kSusanReach);
        writeNearBorder(mask, inverse, from, to, x, height - kSusanReach, height);
        std::array<const float*, kLines> lines;
        for (int j = 0; j < kLines; ++j) {
            lines[static_cast<std::size_t>(j)] = from.row(x - kSusanReach + j) + kSusanReach;
        }
        kernels.planeColumn(lines.data(), height - 2 * kSusanReach, weights,
                            to.row(x) + kSusanReach);
    }
}

}  // namespace orv
