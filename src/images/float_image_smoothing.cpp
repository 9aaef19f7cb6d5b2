#include <array>
#include <cstddef>
#include <vector>

#include "images/float_image.h"

namespace orv {

namespace {

/// The lines of a plane that are smoothed together: `count` positions of `length` neighbouring
/// samples each, `positionStride` floats from one position to the next.
struct LineSet {
    float* first;
    int count;
    std::size_t positionStride;
    int length;
};

/// Sum of the sizes of the weights, as the float that the sums are divided by.
template <std::size_t N>
float divisorOf(const std::array<int, N>& weights) {
    int sum = 0;
    for (const int weight : weights) {
        sum += weight < 0 ? -weight : weight;
    }
    return static_cast<float>(sum);
}

/// The weighted sum at one position; `taps` are the N samples around it, in order.
template <std::size_t N>
float weightedSum(const std::array<float, N>& weights, const std::array<float, N>& taps) {
    if constexpr (N == 3) {
        // The three-weight form has its own order of summing.
        return weights[2] * taps[2] + weights[0] * taps[0] + weights[1] * taps[1];
    } else {
        float sum = weights[0] * taps[0];
        for (std::size_t k = 1; k < N; ++k) {
            sum += weights[k] * taps[k];
        }
        return sum;
    }
}

/// Smooths every line of `lines` along its positions. The unsmoothed samples of the positions
/// already overwritten are kept in `kept`, N / 2 + 1 blocks of `length` floats, so that every
/// sum reads the line as it was.
template <std::size_t N>
void smoothLines(const LineSet& lines, const std::array<float, N>& weights, float divisor,
                 float* kept) {
    constexpr int kReach = static_cast<int>(N / 2);
    const std::size_t length = static_cast<std::size_t>(lines.length);
    const auto at = [&](int i) {
        return lines.first + static_cast<std::size_t>(i) * lines.positionStride;
    };
    const auto keptAt = [&](int i) {
        return kept + static_cast<std::size_t>(i % (kReach + 1)) * length;
    };
    const auto keep = [&](int i) {
        for (std::size_t s = 0; s < length; ++s) {
            keptAt(i)[s] = at(i)[s];
        }
    };
    for (int i = 0; i < kReach && i < lines.count; ++i) {
        keep(i);
    }
    for (int i = kReach; i < lines.count - kReach; ++i) {
        keep(i);
        for (std::size_t s = 0; s < length; ++s) {
            std::array<float, N> taps;
            for (int k = 0; k <= kReach; ++k) {
                taps[static_cast<std::size_t>(k)] = keptAt(i - kReach + k)[s];
            }
            for (int k = kReach + 1; k < static_cast<int>(N); ++k) {
                taps[static_cast<std::size_t>(k)] = at(i - kReach + k)[s];
            }
            at(i)[s] = weightedSum(weights, taps) / divisor;
        }
    }
}

template <std::size_t N>
void smooth(FloatImage& plane, const std::array<int, N>& weights) {
    const float divisor = divisorOf(weights);
    std::array<float, N> factors;
    for (std::size_t k = 0; k < N; ++k) {
        factors[k] = static_cast<float>(weights[k]);
    }
    const std::size_t columnStride = static_cast<std::size_t>(plane.height());
    std::vector<float> kept((N / 2 + 1) * columnStride);

    smoothLines(LineSet{plane.data(), plane.width(), columnStride, plane.height()}, factors,
                divisor, kept.data());
    for (int x = 0; x < plane.width(); ++x) {
        smoothLines(LineSet{plane.row(x), plane.height(), 1, 1}, factors, divisor, kept.data());
    }
}

}  // namespace

void FloatImage::smooth3(int a, int b, int c) {
    smooth(*this, std::array<int, 3>{a, b, c});
}

void FloatImage::smooth5(int a, int b, int c, int d, int e) {
    smooth(*this, std::array<int, 5>{a, b, c, d, e});
}

void FloatImage::smooth7(int a, int b, int c, int d, int e, int f, int g) {
    smooth(*this, std::array<int, 7>{a, b, c, d, e, f, g});
}

}  // namespace orv
