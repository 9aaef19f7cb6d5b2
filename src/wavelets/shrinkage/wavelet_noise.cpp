#include "wavelets/shrinkage/wavelet_noise.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "images/real_image.h"

namespace orv {

namespace {

// quirk: noise-factor
constexpr double kNoiseFactor = 1.4718111371948752;

/// How many details the estimate takes: the truncation of three quarters of the plane.
long long detailCount(int height, int width) {
    const long long all = static_cast<long long>(height) * width;
    return all - (all + 3) / 4;
}

/// The details that enter the estimate, a run for each column.
std::vector<Coefficients> detailsOf(const RealImage& plane, int height, int width) {
    const long long outside = static_cast<long long>(height) * width -
                              static_cast<long long>(height / 2) * (width / 2);
    const long long dropped = outside - detailCount(height, width);
    const int droppedRows = static_cast<int>(dropped / width);
    const int droppedLast = static_cast<int>(dropped % width);
    std::vector<Coefficients> runs;
    runs.reserve(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) {
        const int from = x < width / 2 ? height / 2 : 0;
        const int to = height - droppedRows - (x >= width - droppedLast ? 1 : 0);
        if (to > from) {
            runs.push_back({plane.row(x) + from, static_cast<std::size_t>(to - from)});
        }
    }
    return runs;
}

double noiseAmong(std::span<const Coefficients> details, std::uint64_t zeros, long long count) {
    const long long position = count / 2 - 1;
    if (position < 0) {
        return 0.0;
    }
    return magnitudeAt(details, zeros, static_cast<std::uint64_t>(position),
                       "estimateNoise2D: Unable to malloc working array!\n") *
           kNoiseFactor;
}

}  // namespace

int compareMagnitudes(const double* a, const double* b) {
    if (*a < *b) {
        return -1;
    }
    return *a == *b ? 0 : 1;
}

double estimateNoise2D(const RealImage& coefficients, int height, int width) {
    const long long count = detailCount(height, width);
    if (count <= 0) {
        return 0.0;
    }
    return noiseAmong(detailsOf(coefficients, height, width), /*zeros=*/0, count);
}

double noiseOfDetails(std::span<const Coefficients> details, int height, int width) {
    const long long count = detailCount(height, width);
    long long given = 0;
    for (const Coefficients& run : details) {
        given += static_cast<long long>(run.count);
    }
    return noiseAmong(details, static_cast<std::uint64_t>(count - given), count);
}

}  // namespace orv
