#pragma once

#include <cstddef>

#include "base/kernel_target.h"
#include "filters/kernels/column_block.h"

namespace orv {

/// The factors of one tridiagonal matrix that all lines of a pass share.
struct ThomasFactors {
    const float* multipliers;  ///< m, n - 1 floats
    const float* pivots;       ///< p, n floats
    const float* super;        ///< s, n - 1 floats
};

/// Hot loops of the implicit blur: one line a SIMD lane, each sample as a ThomasLinearSystem
/// gives it line by line, so that every target gives the same bits.
struct ImplicitBlurKernels {
    /// here - m before, in place: one row of the elimination for n lines.
    void (*eliminate)(float m, const float* before, std::size_t n, float* here);

    /// here / p, in place: the last row of the substitution.
    void (*divide)(float p, std::size_t n, float* here);

    /// (here - s behind) / p, in place: one row of the substitution for n lines.
    void (*substitute)(float s, float p, const float* behind, std::size_t n, float* here);

    /// Solves each column in place.
    ///
    /// Shapes:  `strip` length * lanes floats; lanes 16, 32 or 64; factors of order length.
    void (*solveColumns)(const ThomasFactors& factors, const ColumnBlock<float>& block,
                         float* strip, int lanes);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const ImplicitBlurKernels& implicitBlurKernels();
/// The table of one target; null when the build has no code for it.
const ImplicitBlurKernels* implicitBlurKernels(KernelTarget target);

}  // namespace orv
