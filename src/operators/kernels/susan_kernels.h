#pragma once

#include "base/kernel_target.h"

namespace orv {

/// The SUSAN mask reaches this many columns and rows from its centre.
inline constexpr int kSusanReach = 3;

/// The weights of the byte kernels as powers of two:
///
///     w = 2^(quadratic d^2 + spatial[dx^2 + dy^2])
///
/// for a difference d in grey levels at the offset (dx, dy).
///
/// Domain:  quadratic from -1e30 to 0, spatial from -100 to 0; see `susanExponentsFit`.
struct SusanExponents {
    float quadratic;
    float spatial[11];
};

/// The weights of the plane kernel: w = exp(-(d inverse)^2) spatial[dx^2 + dy^2].
struct SusanPlaneWeights {
    double inverse;
    double spatial[11];
};

/// Hot loops of a SUSAN pass, one row or column a call, at samples whose whole mask lies in
/// the picture.
struct SusanKernels {
    /// One row of bytes, held as floats.
    ///
    ///     o = sum of w d / sum of w,   out = c + floor(o)
    ///
    /// Computed in single precision. A sample whose o is closer to a whole number than the
    /// error can tell apart gets a mark in `unsure`, 1 beside 0, and has to be done again in
    /// double precision; all others are what double precision gives.
    ///
    /// Shapes:  lines[3 + dy][i + dx pixelStride] is the neighbour of sample i at (dx, dy).
    using ByteRow = void (*)(const float* const* lines, int count,
                             const SusanExponents& exponents, unsigned char* out,
                             unsigned char* unsure);

    /// One column of a plane, in double precision, rounded to float toward zero.
    ///
    /// Shapes:  lines[3 + dx][i + dy] is the neighbour of sample i at (dx, dy).
    using PlaneColumn = void (*)(const float* const* lines, int count,
                                 const SusanPlaneWeights& weights, float* out);

    ByteRow rgbRow;   ///< three samples a pixel
    ByteRow greyRow;  ///< one sample a pixel
    PlaneColumn planeColumn;
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const SusanKernels& susanKernels();
/// The table of one target; null when the build has no code for it.
const SusanKernels* susanKernels(KernelTarget target);

}  // namespace orv
