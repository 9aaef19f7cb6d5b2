#pragma once

#include <cstdint>
#include <cstring>

namespace orv {

/// The bits of a magnitude, which ascend with it; what is no number comes last.
///
/// Domain:  numbers without a sign; the bits of others don't ascend.
inline std::uint64_t bitsOf(double magnitude) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &magnitude, sizeof bits);
    return bits;
}

/// The magnitude of such bits.
inline double magnitudeOf(std::uint64_t bits) {
    double magnitude = 0.0;
    std::memcpy(&magnitude, &bits, sizeof magnitude);
    return magnitude;
}

}  // namespace orv
