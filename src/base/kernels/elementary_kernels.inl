// Bodies of the table in elementary_kernels.h: plain loops, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

constexpr std::size_t kChunk = 512;

using Function = double (*)(double);

// Whether all values are within the bounds; NaN isn't.
inline bool allWithin(const double* x, std::size_t n, double lowest, double highest) {
    unsigned long long outside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const bool inside = (x[i] >= lowest) & (x[i] <= highest);
        outside += inside ? 0ULL : 1ULL;
    }
    return outside == 0;
}

template <class Work>
inline void inChunks(const double* x, double* y, std::size_t n, Work work) {
    for (std::size_t i = 0; i < n; i += kChunk) {
        work(x + i, y + i, n - i < kChunk ? n - i : kChunk);
    }
}

// The form for a range where a whole chunk is in it; the bits are the same.
template <Function inRange, Function anywhere>
inline void each(const double* x, double* y, std::size_t n, double lowest, double highest) {
    inChunks(x, y, n, [=](const double* from, double* to, std::size_t count) {
        if (allWithin(from, count, lowest, highest)) {
            ORV_LANE_LOOP
            for (std::size_t i = 0; i < count; ++i) {
                to[i] = inRange(from[i]);
            }
        } else {
            ORV_LANE_LOOP
            for (std::size_t i = 0; i < count; ++i) {
                to[i] = anywhere(from[i]);
            }
        }
    });
}

constexpr double kGreatest = 0x1.fffffffffffffp1023;

void expEach(const double* x, double* y, std::size_t n) {
    each<expInRange, expOf>(x, y, n, -708.0, 709.0);
}

void logEach(const double* x, double* y, std::size_t n) {
    each<logInRange, logOf>(x, y, n, kLeastNormal, kGreatest);
}

void log10Each(const double* x, double* y, std::size_t n) {
    each<log10InRange, log10Of>(x, y, n, kLeastNormal, kGreatest);
}

void exp10Each(const double* x, double* y, std::size_t n) {
    each<exp10InRange, exp10Of>(x, y, n, -307.0, 308.0);
}

void atanEach(const double* x, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = atanOf(x[i]);
    }
}

// In two loops: one alone has more values at a time than SSE2 has registers, and halts.
inline void powInTwoSteps(const double* x, const PowExponent& exponent, double* y,
                          std::size_t n) {
    double low[kChunk];
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const DoublePair logarithm = logPair(x[i], 0.0);
        y[i] = logarithm.high;
        low[i] = logarithm.low;
    }
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = powFromLog({y[i], low[i]}, exponent);
    }
}

void powEach(const double* x, double exponent, double* y, std::size_t n) {
    const PowRange range = powRangeOf(exponent);
    const PowExponent power = powExponentOf(exponent);
    inChunks(x, y, n, [=](const double* from, double* to, std::size_t count) {
        if (allWithin(from, count, range.lowest, range.highest)) {
            powInTwoSteps(from, power, to, count);
        } else {
            ORV_LANE_LOOP
            for (std::size_t i = 0; i < count; ++i) {
                to[i] = powOf(from[i], power);
            }
        }
    });
}

}  // namespace

extern const ElementaryKernels kElementaryKernels;
constinit const ElementaryKernels kElementaryKernels = {expEach,   logEach,  log10Each,
                                                        exp10Each, atanEach, powEach};

}  // namespace orv::ORV_KERNEL_NAMESPACE
