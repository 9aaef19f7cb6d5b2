#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "images/float_image3.h"
#include "images/real_image3.h"

namespace orv::test {

/// Seeded noise: the same numbers on every platform.
class Noise {
  public:
    explicit Noise(unsigned seed) : state_(0x9e3779b97f4a7c15ULL * (seed + 1ULL)) {}

    /// The next 32 random bits.
    std::uint32_t bits() {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        const std::uint64_t mixed = (state_ ^ (state_ >> 29)) * 0xbf58476d1ce4e5b9ULL;
        return static_cast<std::uint32_t>(mixed >> 32);
    }
    /// At least `from` and below `to`.
    double between(double from, double to) {
        return from + (to - from) * (static_cast<double>(bits() >> 8) / 16777216.0);
    }
    /// From `from` to `to`, both included.
    int integer(int from, int to) {
        return from + static_cast<int>(bits() % static_cast<std::uint32_t>(to - from + 1));
    }

  private:
    std::uint64_t state_;
};

/// A plane of noise between `from` and `to`, grey levels by default.
inline FloatImage noisePlane(int width, int height, unsigned seed, double from = 0.0,
                             double to = 255.0) {
    FloatImage plane(width, height);
    Noise noise(seed);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = static_cast<float>(noise.between(from, to));
    }
    return plane;
}

/// The same in double precision.
inline RealImage noiseRealPlane(int width, int height, unsigned seed, double from = 0.0,
                                double to = 255.0) {
    RealImage plane(width, height);
    Noise noise(seed);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = noise.between(from, to);
    }
    return plane;
}

/// Three planes of different noise.
inline FloatImage3 noisePlanes(int width, int height, unsigned seed) {
    FloatImage3 planes(width, height);
    for (int i = 0; i < 3; ++i) {
        planes.plane(i).copyFrom(noisePlane(width, height, seed + static_cast<unsigned>(i)));
    }
    return planes;
}

/// Three planes of different noise in double precision.
inline RealImage3 noiseRealPlanes(int width, int height, unsigned seed) {
    RealImage3 planes(width, height);
    for (int i = 0; i < 3; ++i) {
        planes.plane(i).assign(noiseRealPlane(width, height, seed + static_cast<unsigned>(i)));
    }
    return planes;
}

/// Whether `count` samples are equal bit for bit: -0 differs from 0, a NaN equals itself.
template <class Sample>
bool sameBits(const Sample* a, const Sample* b, std::size_t count) {
    return count == 0 || std::memcmp(a, b, count * sizeof(Sample)) == 0;
}

/// Whether two planes have one size and the same bits.
inline bool sameBits(const FloatImage& a, const FloatImage& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           sameBits(a.data(), b.data(), a.sampleCount());
}
inline bool sameBits(const RealImage& a, const RealImage& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           sameBits(a.data(), b.data(), a.sampleCount());
}
inline bool sameBits(const FloatImage3& a, const FloatImage3& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           sameBits(a.plane(0), b.plane(0)) && sameBits(a.plane(1), b.plane(1)) &&
           sameBits(a.plane(2), b.plane(2));
}
inline bool sameBits(const RealImage3& a, const RealImage3& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           sameBits(a.plane(0), b.plane(0)) && sameBits(a.plane(1), b.plane(1)) &&
           sameBits(a.plane(2), b.plane(2));
}

}  // namespace orv::test
