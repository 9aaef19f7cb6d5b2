// Bodies of the shrinkage kernels: plain loops, compiled once per target.
#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

constexpr std::size_t kLanes = 8;

inline double magnitudeOf(double v) {
    return __builtin_fabs(v);
}

// Both differences are formed, so that the choice is a blend and not a branch.
inline double softened(double v, double threshold, double floor) {
    const double below = v - threshold;
    const double above = v + threshold;
    const double moved = v > 0.0 ? below : above;
    return magnitudeOf(v) > floor ? moved : 0.0;
}

// The magnitude up to which softening gives 0: a threshold below 0 leaves zeros alone.
inline double floorOf(double threshold) {
    return threshold < 0.0 ? 0.0 : threshold;
}

void magnitudes(const double* from, double* to, std::size_t count) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = magnitudeOf(from[i]);
    }
}

void scaledMagnitudes(const double* from, double divisor, double* to, std::size_t count) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = magnitudeOf(from[i] / divisor);
    }
}

void divideAndMultiply(double* values, double divisor, std::size_t count) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        const double quotient = values[i] / divisor;
        values[i] = quotient * divisor;
    }
}

std::size_t shrink(double* values, double threshold, std::size_t count) {
    const double floor = floorOf(threshold);
    std::size_t tossed = 0;
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        const double v = values[i];
        values[i] = softened(v, threshold, floor);
        tossed += magnitudeOf(v) > threshold ? 0U : 1U;
    }
    return tossed;
}

std::size_t shrinkScaled(double* values, double divisor, double threshold, std::size_t count) {
    const double floor = floorOf(threshold);
    std::size_t tossed = 0;
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        const double v = values[i] / divisor;
        values[i] = softened(v, threshold, floor) * divisor;
        tossed += magnitudeOf(v) > threshold ? 0U : 1U;
    }
    return tossed;
}

double sumOfSquares(const double* values, std::size_t count) {
    double lanes[kLanes] = {};
    std::size_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        for (std::size_t k = 0; k < kLanes; ++k) {
            lanes[k] += values[i + k] * values[i + k];
        }
    }
    for (std::size_t k = 0; i < count; ++i, ++k) {
        lanes[k] += values[i] * values[i];
    }
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

void centredSquares(const double* values, double mean, double divisor, double* to,
                    std::size_t count) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        const double v = values[i];
        to[i] = (v * v - mean) / divisor;
    }
}

// The largest is the same in any order, so that there may be many lanes.
double largestMagnitude(const double* values, std::size_t count) {
    constexpr std::size_t kWide = 4 * kLanes;
    double lanes[kWide] = {};
    std::size_t i = 0;
    for (; i + kWide <= count; i += kWide) {
        for (std::size_t k = 0; k < kWide; ++k) {
            const double m = magnitudeOf(values[i + k]);
            lanes[k] = m > lanes[k] ? m : lanes[k];
        }
    }
    for (std::size_t k = 0; i < count; ++i, ++k) {
        const double m = magnitudeOf(values[i]);
        lanes[k] = m > lanes[k] ? m : lanes[k];
    }
    double largest = lanes[0];
    for (std::size_t k = 1; k < kWide; ++k) {
        largest = lanes[k] > largest ? lanes[k] : largest;
    }
    return largest;
}

/// Rows `from` to `to` - 1 of one column.
inline void cumulateRows(const double* previous, double* column, std::size_t from,
                         std::size_t to) {
    if (from == 0 && to > 0) {
        column[0] = column[0] + previous[0];
        from = 1;
    }
    for (std::size_t y = from; y < to; ++y) {
        column[y] = ((column[y] + column[y - 1]) + previous[y]) - previous[y - 1];
    }
}

// A single column is a chain of dependent additions. Four columns, each a row behind the one
// in front of it, are four chains that run side by side.
void cumulateFour(const double* previous, double* values, std::size_t height) {
    double* const a = values;
    double* const b = a + height;
    double* const c = b + height;
    double* const d = c + height;
    cumulateRows(previous, a, 0, 3);
    cumulateRows(a, b, 0, 2);
    cumulateRows(b, c, 0, 1);
    // The row that each column is to do next is its first in the loop; column d has none done.
    double lastA = a[2];
    double lastB = b[1];
    double lastC = c[0];
    double beforeA = a[1];
    double beforeB = b[0];
    double nextA = ((a[3] + lastA) + previous[3]) - previous[2];
    double nextB = ((b[2] + lastB) + lastA) - beforeA;
    double nextC = ((c[1] + lastC) + lastB) - beforeB;
    double lastD = d[0] + lastC;
    double beforeC = lastC;
    a[3] = nextA;
    b[2] = nextB;
    c[1] = nextC;
    d[0] = lastD;
    beforeA = lastA;
    lastA = nextA;
    beforeB = lastB;
    lastB = nextB;
    lastC = nextC;
    for (std::size_t y = 4; y < height; ++y) {
        nextA = ((a[y] + lastA) + previous[y]) - previous[y - 1];
        nextB = ((b[y - 1] + lastB) + lastA) - beforeA;
        nextC = ((c[y - 2] + lastC) + lastB) - beforeB;
        lastD = ((d[y - 3] + lastD) + lastC) - beforeC;
        a[y] = nextA;
        b[y - 1] = nextB;
        c[y - 2] = nextC;
        d[y - 3] = lastD;
        beforeA = lastA;
        lastA = nextA;
        beforeB = lastB;
        lastB = nextB;
        beforeC = lastC;
        lastC = nextC;
    }
    cumulateRows(a, b, height - 1, height);
    cumulateRows(b, c, height - 2, height);
    cumulateRows(c, d, height - 3, height);
}

void cumulateColumns(const double* previous, double* values, std::size_t height, int columns) {
    if (columns == 4 && height >= 4) {
        cumulateFour(previous, values, height);
        return;
    }
    for (int k = 0; k < columns; ++k) {
        cumulateRows(previous, values, 0, height);
        previous = values;
        values += height;
    }
}

}  // namespace

extern const ShrinkKernels kShrinkKernels;
constinit const ShrinkKernels kShrinkKernels = {
    magnitudes,   scaledMagnitudes, divideAndMultiply, shrink,          shrinkScaled,
    sumOfSquares, centredSquares,   largestMagnitude,  cumulateColumns,
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
