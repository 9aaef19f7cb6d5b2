// Bodies of the table in homomorphic_kernels.h: plain loops, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

// Whether all samples are whole numbers from 0 to 255, whose logarithms then stand in y.
inline bool looksUp(const double* x, const double* logarithms, double* y, std::size_t n) {
    // A sample below 2^8 added to 2^52 leaves its whole part in the low byte.
    constexpr double kShift = 0x1p52;
    ElementaryBits others = 0;
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const ElementaryBits k = bitsOf(x[i] + kShift) & 255;
        const double whole = fromBits(k | bitsOf(kShift)) - kShift;
        others += whole == x[i] ? 0ULL : 1ULL;
        y[i] = logarithms[k];
    }
    return others == 0;
}

void logarithm(const double* x, const double* logarithms, double* y, std::size_t n) {
    constexpr std::size_t kChunk = 512;
    for (std::size_t first = 0; first < n; first += kChunk) {
        const std::size_t size = n - first < kChunk ? n - first : kChunk;
        const double* from = x + first;
        double* to = y + first;
        if (looksUp(from, logarithms, to, size)) {
            continue;
        }
        ORV_LANE_LOOP
        for (std::size_t i = 0; i < size; ++i) {
            to[i] = logOf(from[i] + 0.0);
        }
    }
}

void difference(const double* x, const double* low, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = x[i] - low[i];
    }
}

void split(const double* source, const double* light, double* level, double* share,
           std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const double s = source[i];
        double m = light[i];
        m = m < 0.0 ? 0.0 : m;
        m = m < s ? s : m;
        double r = s / m;
        r = r < 0.0 ? 0.0 : r;
        r = r > 1.0 ? 1.0 : r;
        level[i] = m * 0.00392156862745098;  // 1 / 255
        share[i] = r;
    }
}

void join(const double* level, const double* share, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = level[i] * 255.0 * share[i];
    }
}

}  // namespace

extern const HomomorphicKernels kHomomorphicKernels;
constinit const HomomorphicKernels kHomomorphicKernels = {logarithm, difference, split, join};

}  // namespace orv::ORV_KERNEL_NAMESPACE
