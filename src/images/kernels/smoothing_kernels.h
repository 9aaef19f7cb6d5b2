#pragma once

#include <cstddef>

namespace orv {

/// Hot loops of the separable smoothing of float planes.
///
///     out[s] = (sum of weights[k] taps[k][s]) / divisor
///
/// in float, each operation rounded: from the first tap to the last, but for three weights in
/// the order last, first, middle. Every target gives the same bits.
///
/// Shapes:  `count` samples in each tap and in out, which aliases none of them.
struct SmoothingKernels {
    using Sum = void (*)(const float* const* taps, const float* weights, float divisor,
                         std::size_t count, float* out);
    Sum three;
    Sum five;
    Sum seven;
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const SmoothingKernels& smoothingKernels();

}  // namespace orv
