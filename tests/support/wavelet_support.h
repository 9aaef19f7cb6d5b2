#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "images/real_image.h"
#include "wavelets/transform/wavelet_filter_banks.h"

namespace orv::test {

/// The four banks.
struct WaveletBanks {
    WaveletBanks() {
        InitWaveletFilters(analysisLow, analysisHigh, synthesisLow, synthesisHigh);
    }

    WaveletFilter analysisLow[kWaveletCount];
    WaveletFilter analysisHigh[kWaveletCount];
    WaveletFilter synthesisLow[kWaveletCount];
    WaveletFilter synthesisHigh[kWaveletCount];
};

inline std::vector<double> noiseLine(int n, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> level(-128.0, 255.0);
    std::vector<double> line(static_cast<std::size_t>(n));
    for (double& value : line) {
        value = level(engine);
    }
    return line;
}

/// Noise with runs of +0 and -0 in it.
inline RealImage noisePlane(int width, int height, unsigned seed) {
    RealImage plane(width, height);
    const std::vector<double> line = noiseLine(width * height + 1, seed);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double zero = line[i + 1] < 0.0 ? -0.0 : 0.0;
        plane.data()[i] = (i / 23) % 5 == 0 ? zero : line[i];
    }
    return plane;
}

/// Line transforms as sums over positions modulo n, straight from their definition.
namespace definition {

inline double sampleAt(const std::vector<double>& x, int i) {
    const int n = static_cast<int>(x.size());
    return x[static_cast<std::size_t>(((i % n) + n) % n)];
}

inline double sumAt(const std::vector<double>& x, int i, const WaveletFilter& filter) {
    double sum = 0.0;
    for (int k = 0; k < filter.length; ++k) {
        sum += sampleAt(x, i + k - filter.offset) * filter.taps[k];
    }
    return sum;
}

inline std::vector<double> forward(const std::vector<double>& x, const WaveletFilter& low,
                                   const WaveletFilter& high) {
    const std::size_t half = x.size() / 2;
    std::vector<double> result(x.size());
    for (std::size_t i = 0; i < half; ++i) {
        result[i] = sumAt(x, 2 * static_cast<int>(i), low);
        result[half + i] = sumAt(x, 2 * static_cast<int>(i), high);
    }
    return result;
}

inline std::vector<double> inverse(const std::vector<double>& c, const WaveletFilter& low,
                                   const WaveletFilter& high) {
    std::vector<double> a(c.size(), 0.0);
    std::vector<double> b(c.size(), 0.0);
    for (std::size_t t = 0; t < c.size() / 2; ++t) {
        a[2 * t] = c[t];
        b[2 * t] = c[c.size() / 2 + t];
    }
    std::vector<double> result(c.size());
    for (std::size_t i = 0; i < c.size(); ++i) {
        const int at = static_cast<int>(i);
        result[i] = sumAt(a, at, low) + sumAt(b, at, high);
    }
    return result;
}

using Line = std::vector<double> (*)(const std::vector<double>&, const WaveletFilter&,
                                     const WaveletFilter&);

inline void alongX(RealImage& plane, int width, int height, Line line, const WaveletFilter& low,
                   const WaveletFilter& high) {
    std::vector<double> samples(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            samples[static_cast<std::size_t>(x)] = plane.row(x)[y];
        }
        const std::vector<double> result = line(samples, low, high);
        for (int x = 0; x < width; ++x) {
            plane.row(x)[y] = result[static_cast<std::size_t>(x)];
        }
    }
}

inline void alongY(RealImage& plane, int width, int height, Line line, const WaveletFilter& low,
                   const WaveletFilter& high) {
    for (int x = 0; x < width; ++x) {
        const std::vector<double> result =
            line(std::vector<double>(plane.row(x), plane.row(x) + height), low, high);
        std::memcpy(plane.row(x), result.data(), result.size() * sizeof(double));
    }
}

/// FwtImage in place, every pass of even sizes.
inline void forwardPlane(RealImage& plane, int levels, const WaveletFilter& low,
                         const WaveletFilter& high) {
    for (int level = 0; level < levels; ++level) {
        const int width = plane.width() >> level;
        const int height = plane.height() >> level;
        alongX(plane, width, height, forward, low, high);
        alongY(plane, width, height, forward, low, high);
    }
}

/// IwtImage in place, every pass of even sizes.
inline void inversePlane(RealImage& plane, int levels, const WaveletFilter& low,
                         const WaveletFilter& high) {
    for (int level = levels - 1; level >= 0; --level) {
        const int width = plane.width() >> level;
        const int height = plane.height() >> level;
        alongY(plane, width, height, inverse, low, high);
        alongX(plane, width, height, inverse, low, high);
    }
}

}  // namespace definition

/// Whether all samples have the same bits, the sign of zeros included.
inline bool sameBits(const double* a, const double* b, std::size_t count) {
    return std::memcmp(a, b, count * sizeof(double)) == 0;
}

inline bool sameBits(const RealImage& a, const RealImage& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           sameBits(a.data(), b.data(), a.sampleCount());
}

}  // namespace orv::test
