#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "methods/method.h"
#include "support/photo_crops.h"

namespace orv::test {

/// Standard normal values from a seed, by the method of Box and Muller.
class NormalValues {
  public:
    explicit NormalValues(std::uint64_t seed) : state_(seed * 2862933555777941757U + 1U) {}

    double next() {
        const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
        return radius * std::cos(6.283185307179586 * uniform());
    }

  private:
    double uniform() {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<double>(state_ >> 11U) / 9007199254740992.0;
    }

    std::uint64_t state_;
};

/// Adds noise of standard deviation `deviation` to a plane, unrounded and unclipped.
inline void addNoise(FloatImage& plane, double deviation, std::uint64_t seed) {
    NormalValues values(seed);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = static_cast<float>(plane.data()[i] + deviation * values.next());
    }
}

/// The samples that a file of 8 bits keeps.
inline void roundToBytes(Planes& planes) {
    for (const auto& plane : planes) {
        for (std::size_t i = 0; i < plane->sampleCount(); ++i) {
            plane->data()[i] = std::floor(std::clamp(plane->data()[i], 0.0f, 255.0f) + 0.5f);
        }
    }
}

/// The three planes of one of kPhotoCrops.
inline Planes photoCropPlanes(const char* name) {
    const PhotoCrop crop = photoCrop(name);
    Planes planes;
    for (std::size_t c = 0; c < 3; ++c) {
        planes.push_back(std::make_unique<FloatImage>(crop.width, crop.height));
        for (int x = 0; x < crop.width; ++x) {
            for (int y = 0; y < crop.height; ++y) {
                const auto pixel = static_cast<std::size_t>(y * crop.width + x);
                planes[c]->row(x)[y] = crop.bytes[3 * pixel + c];
            }
        }
    }
    return planes;
}

inline Planes copyOf(const Planes& planes) {
    Planes copies;
    for (const auto& plane : planes) {
        copies.push_back(plane->clone());
    }
    return copies;
}

/// A photo as a file of 8 bits with noise of its own in each channel.
inline Planes noisyPhoto(const Planes& clean, double deviation, std::uint64_t seed) {
    Planes noisy = copyOf(clean);
    for (std::size_t c = 0; c < noisy.size(); ++c) {
        addNoise(*noisy[c], deviation, seed + 100 * c);
    }
    roundToBytes(noisy);
    return noisy;
}

/// Peak signal-to-noise ratio, decibels; 99 for equal planes.
inline double psnrOf(const Planes& clean, const Planes& result) {
    double squares = 0.0;
    double count = 0.0;
    for (std::size_t c = 0; c < clean.size(); ++c) {
        for (std::size_t i = 0; i < clean[c]->sampleCount(); ++i) {
            const double difference =
                static_cast<double>(clean[c]->data()[i]) - result[c]->data()[i];
            squares += difference * difference;
            count += 1.0;
        }
    }
    return squares == 0.0 ? 99.0 : 10.0 * std::log10(65025.0 * count / squares);
}

}  // namespace orv::test
