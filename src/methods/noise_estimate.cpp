#include "methods/noise_estimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "methods/working_planes.h"

namespace orv {

namespace {

/// Median of the magnitude of a standard normal value.
constexpr double kNormalMedian = 0.6745;
constexpr float kBlack = 0.0f;
constexpr float kWhite = 255.0f;
/// The least share of places that a measurement without the clipped ones needs.
constexpr double kLeastUnclipped = 0.25;

constexpr std::array<float, 1> kAsItIs{1.0f};
constexpr std::array<float, 2> kFirstDifference{0.707106781f, -0.707106781f};
constexpr std::array<float, 4> kThirdDifference{0.223606798f, -0.670820393f, 0.670820393f,
                                                -0.223606798f};

/// Columns are left out of planes with more samples than this: a median of so many is exact
/// to a quarter of a percent.
constexpr std::size_t kEnoughSamples = 2'000'000;

using Taps = std::span<const float>;

Taps tapsFor(int size) {
    if (size >= 4) {
        return kThirdDifference;
    }
    return size >= 2 ? Taps(kFirstDifference) : Taps(kAsItIs);
}

bool isClipped(float sample) {
    return sample <= kBlack || sample >= kWhite;
}

/// Where to look for clipped samples: the planes of the picture as it came.
using Sources = std::span<const FloatImage* const>;

/// Columns from x on joined by the taps.
void joinColumns(const FloatImage& plane, int x, Taps taps, std::vector<float>& joined) {
    std::fill(joined.begin(), joined.end(), 0.0f);
    for (std::size_t k = 0; k < taps.size(); ++k) {
        const float* const column = plane.row(x + static_cast<int>(k));
        for (std::size_t y = 0; y < joined.size(); ++y) {
            joined[y] += taps[k] * column[y];
        }
    }
}

/// Which rows hold a clipped sample in the columns that are joined.
void findClipped(Sources sources, int x, std::size_t columns,
                 std::vector<unsigned char>& clipped) {
    std::fill(clipped.begin(), clipped.end(), static_cast<unsigned char>(0));
    for (const FloatImage* const source : sources) {
        for (std::size_t k = 0; k < columns; ++k) {
            const float* const column = source->row(x + static_cast<int>(k));
            for (std::size_t y = 0; y < clipped.size(); ++y) {
                clipped[y] = static_cast<unsigned char>(
                    clipped[y] | static_cast<unsigned char>(isClipped(column[y])));
            }
        }
    }
}

/// The magnitudes of the details, apart by whether they meet a clipped sample.
struct Magnitudes {
    std::vector<float> unclipped;
    std::vector<float> clipped;
};

void addColumn(const std::vector<float>& joined, const std::vector<unsigned char>& clippedRows,
               Taps taps, Magnitudes& magnitudes) {
    for (std::size_t y = 0; y + taps.size() <= joined.size(); ++y) {
        float detail = 0.0f;
        unsigned char clipped = 0;
        for (std::size_t k = 0; k < taps.size(); ++k) {
            detail += taps[k] * joined[y + k];
            clipped = static_cast<unsigned char>(clipped | clippedRows[y + k]);
        }
        (clipped != 0 ? magnitudes.clipped : magnitudes.unclipped).push_back(std::abs(detail));
    }
}

Magnitudes diagonalDetails(const FloatImage& plane, Sources sources) {
    const Taps alongX = tapsFor(plane.width());
    const Taps alongY = tapsFor(plane.height());
    const int places = plane.width() - static_cast<int>(alongX.size()) + 1;
    const auto step = static_cast<int>(1 + plane.sampleCount() / kEnoughSamples);
    Magnitudes magnitudes;
    std::vector<float> joined(static_cast<std::size_t>(plane.height()));
    std::vector<unsigned char> clippedRows(joined.size());
    for (int x = 0; x < places; x += step) {
        joinColumns(plane, x, alongX, joined);
        findClipped(sources, x, alongX.size(), clippedRows);
        addColumn(joined, clippedRows, alongY, magnitudes);
    }
    return magnitudes;
}

/// The value in the middle, the mean of the two in the middle of an even count.
double medianOf(std::vector<float>& values) {
    if (values.empty()) {
        return 0.0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    const double upper = *middle;
    if (values.size() % 2 != 0) {
        return upper;
    }
    return 0.5 * (upper + *std::max_element(values.begin(), middle));
}

double quadraticMean(std::span<const double> values) {
    double sum = 0.0;
    for (const double value : values) {
        sum += value * value;
    }
    return values.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(values.size()));
}

double deviationOf(const FloatImage& plane, Sources sources) {
    if (plane.sampleCount() < 2) {
        return 0.0;
    }
    Magnitudes magnitudes = diagonalDetails(plane, sources);
    std::vector<float>& kept = magnitudes.unclipped;
    const auto all = static_cast<double>(kept.size() + magnitudes.clipped.size());
    if (static_cast<double>(kept.size()) < kLeastUnclipped * all) {
        kept.insert(kept.end(), magnitudes.clipped.begin(), magnitudes.clipped.end());
    }
    return medianOf(kept) / kNormalMedian;
}

}  // namespace

double noiseDeviation(const FloatImage& plane) {
    const std::array<const FloatImage*, 1> sources{&plane};
    return deviationOf(plane, sources);
}

double NoiseEstimate::overall() const {
    return quadraticMean(channels);
}

NoiseEstimate estimateNoise(const Planes& planes) {
    NoiseEstimate estimate;
    Planes opponent;
    std::vector<const FloatImage*> sources;
    for (const auto& plane : planes) {
        estimate.channels.push_back(noiseDeviation(*plane));
        sources.push_back(plane.get());
        opponent.push_back(planes.size() == 3 ? plane->clone() : nullptr);
    }
    if (planes.size() != 3) {
        estimate.brightness = estimate.overall();
        return estimate;
    }
    turnToOpponent(opponent);
    estimate.brightness = deviationOf(*opponent[0], sources);
    const std::array<double, 2> colours{deviationOf(*opponent[1], sources),
                                        deviationOf(*opponent[2], sources)};
    estimate.chroma = quadraticMean(colours);
    return estimate;
}

}  // namespace orv
