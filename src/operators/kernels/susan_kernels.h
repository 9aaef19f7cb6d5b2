#pragma once

#include "base/kernel_target.h"

namespace orv {

/// The SUSAN mask reaches this many columns and rows from its centre.
inline constexpr int kSusanReach = 3;

/// How the kernels hold a strip of a picture: lines of `kStrip` samples and a margin.
///
/// A line buffer has `kPad` samples in front of its first and behind its last one. Weights of
/// a line stand in a slot: 18 rows of `kRow`, one for each neighbour on the line itself or on
/// the next three; a row has `kMargin` weights in front. The sizes keep all in the second cache.
template <class T>
struct SusanStrip {
    static constexpr int kStrip = 4096 / static_cast<int>(sizeof(T));
    static constexpr int kPad = 32;
    static constexpr int kMargin = 16;
    static constexpr int kRow = kStrip + 2 * kMargin;
    static constexpr int kSlot = 18 * kRow;
};

/// The weights of bytes as powers of two:
///
///     w = 2^(quadratic d^2 + spatial[dx^2 + dy^2])
///
/// for a difference d in grey levels at the offset (dx, dy).
///
/// Domain:  quadratic from -1e30 to 0, spatial from -100 to 0.
struct SusanExponents {
    float quadratic;
    float spatial[11];
};

/// The weights of planes: w = exp(-(d inverse)^2) spatial[dx^2 + dy^2].
struct SusanPlaneWeights {
    double inverse;
    double spatial[11];
};

/// Hot loops of a SUSAN pass over a strip, one line a call.
///
/// A weight depends on two samples and not on which of them is the centre. So each is computed
/// once, with the first sample of the pair, and read again when the other one is the centre.
/// Lines are rows of bytes or columns of a plane.
struct SusanKernels {
    /// Weights of one line and its neighbours on the line and the next three.
    ///
    /// Shapes:  lines[0] to lines[3] at sample 0, of `count` samples and their pads; the slot
    ///          is filled for the samples and 3 pixels in front and behind.
    using ByteWeights = void (*)(const float* const* lines, int count,
                                 const SusanExponents& exponents, float* slot);
    using PlaneWeights = void (*)(const double* const* lines, int count,
                                  const SusanPlaneWeights& weights, double* slot);

    /// One row of bytes.
    ///
    ///     o = sum of w d / sum of w,   out = c + floor(o)
    ///
    /// Computed in single precision. A sample whose o is closer to a whole number than the
    /// error can tell apart gets a mark in `unsure`, 1 beside 0, and has to be done again in
    /// double precision; all others are what double precision gives.
    ///
    /// Shapes:  lines[0] to lines[6] are those from three above to three below, slots[0] to
    ///          slots[3] the weights of lines[0] to lines[3].
    using ByteRow = void (*)(const float* const* lines, const float* const* slots, int count,
                             unsigned char* out, unsigned char* unsure);

    /// One column of a plane, in double precision in the order of the mask, rounded to float
    /// toward zero.
    using PlaneColumn = void (*)(const double* const* lines, const double* const* slots,
                                 int count, float* out);

    ByteWeights rgbWeights;  ///< three samples a pixel
    ByteRow rgbRow;
    ByteWeights greyWeights;  ///< one sample a pixel
    ByteRow greyRow;
    PlaneWeights planeWeights;
    PlaneColumn planeColumn;
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const SusanKernels& susanKernels();
/// The table of one target; null when the build has no code for it.
const SusanKernels* susanKernels(KernelTarget target);

}  // namespace orv
