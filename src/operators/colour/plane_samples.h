#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "images/real_image3.h"

namespace orv {

class DiscreteImage;

/// The first samples of three planes; the planes lie without gap.
std::array<const double*, 3> samplesOf(const RealImage3& planes);
std::array<double*, 3> samplesOf(RealImage3& planes);

/// Three planes of the size of `planes` whose samples hold anything.
std::unique_ptr<RealImage3> emptyLike(const RealImage3& planes);

/// The target if there is one of the planes' size, else new planes as emptyLike makes them, with
/// the planes' flags.
std::unique_ptr<RealImage3> targetLike(const RealImage3& planes,
                                       std::unique_ptr<RealImage3> target);

/// Plane c holds image.getChannel(c, x, y), c = 0, 1, 2.
std::unique_ptr<RealImage3> channelPlanes(const DiscreteImage& image);

/// The pointers `offset` samples on.
template <class Sample>
std::array<Sample*, 3> at(const std::array<Sample*, 3>& samples, std::size_t offset) {
    return {samples[0] + offset, samples[1] + offset, samples[2] + offset};
}

}  // namespace orv
