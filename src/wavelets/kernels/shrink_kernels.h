#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// The loops of wavelet shrinkage over contiguous coefficients.
struct ShrinkKernels {
    /// to[i] = |from[i]|; `to` may be `from`.
    void (*magnitudes)(const double* from, double* to, std::size_t count);

    /// to[i] = |from[i] / divisor|.
    void (*scaledMagnitudes)(const double* from, double divisor, double* to, std::size_t count);

    /// values[i] = (values[i] / divisor) divisor, each operation rounded.
    void (*divideAndMultiply)(double* values, double divisor, std::size_t count);

    /// Soft thresholding; gives how many values became 0.
    ///
    ///     v = 0 unless |v| > t;  v - t for v > 0, v + t for v < 0
    ///
    /// Domain:  any t; below 0 it moves values away from 0, and zeros stay. A value that is no
    ///          number becomes 0.
    std::size_t (*shrink)(double* values, double threshold, std::size_t count);

    /// Soft thresholding of values / divisor, multiplied by it again, each operation rounded.
    std::size_t (*shrinkScaled)(double* values, double divisor, double threshold,
                                std::size_t count);

    /// Sum of values[i]^2: element i into lane i mod 8, lanes joined pairwise.
    double (*sumOfSquares)(const double* values, std::size_t count);

    /// to[i] = (values[i]^2 - mean) / divisor.
    void (*centredSquares)(const double* values, double mean, double divisor, double* to,
                           std::size_t count);

    /// The largest |values[i]|, at least 0; what is no number doesn't count.
    double (*largestMagnitude)(const double* values, std::size_t count);

    /// Two-dimensional running sums of `columns` columns, in place; `previous` is the finished
    /// column in front of them.
    ///
    ///     S[x][y] = ((own + S[x][y - 1]) + S[x - 1][y]) - S[x - 1][y - 1]   for y > 0
    ///     S[x][0] = own + S[x - 1][0]
    ///
    /// Shapes:  the columns stand `height` apart; 1 to 4 of them.
    void (*cumulateColumns)(const double* previous, double* values, std::size_t height,
                            int columns);
};

/// The kernels of the best target.
const ShrinkKernels& shrinkKernels();

/// The kernels of the best target up to `highest`.
const ShrinkKernels& shrinkKernels(KernelTarget highest);

}  // namespace orv
