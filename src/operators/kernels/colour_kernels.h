#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// The sum and the sum of squares of samples, sample i of a plane in lane i mod 8.
///
/// The lanes of a sum join pairwise, ((0 + 1) + (2 + 3)) + ((4 + 5) + (6 + 7)).
struct LaneSums {
    double sum[8];
    double squares[8];
};

/// A 3 x 3 table of weights: output k = sum over i of rows[i][k] * input i, i upward.
using ColourRows = double[3][3];

/// The clipped windows around the samples of one column of an x-major plane: x from x - half to
/// x + half - 1, y likewise, as far as they lie inside width x height.
struct WindowColumn {
    const double* plane;
    int width;
    int height;
    int x;
    int half;
};

/// The loops over samples of the colour transfer. Every target gives the same bits.
///
/// Shapes:  three inputs and three outputs of n samples each; an output may be the input of the
///          same number, other overlaps may not be.
struct ColourKernels {
    /// out[i] = (in[i] + offset) / 256.
    void (*scaleIn)(const double* in, double offset, double* out, std::size_t n);

    /// out k = sum over i of rows[i][k] * in i.
    void (*multiply)(const double* const* in, const ColourRows& rows, double* const* out,
                     std::size_t n);

    /// out k = (sum over i of rows[i][k] * log10(in i)) * scale[k].
    void (*multiplyLogs)(const double* const* in, const ColourRows& rows, const double* scale,
                         double* const* out, std::size_t n);

    /// out k = 10 to the power of (sum over i of rows[i][k] * (in i * scale[i])).
    void (*powersOfProduct)(const double* const* in, const double* scale,
                            const ColourRows& rows, double* const* out, std::size_t n);

    /// Adds n samples to the lanes; the first of them belongs to lane 0.
    void (*addSums)(const double* samples, std::size_t n, LaneSums& sums);

    /// samples[i] = ratio * (samples[i] - mean) + newMean.
    void (*transfer)(double* samples, double ratio, double mean, double newMean, std::size_t n);

    /// samples[i] = samples[i] * 256, limited to 0 and 255; a NaN gives 0.
    void (*scaleOut)(double* samples, std::size_t n);

    /// scores[y] = (deviation + mean) * 0.5 of the window around (x, y), all y of the column.
    ///
    ///     mean = sum / n   deviation = sqrt(squares / n - mean * mean)
    ///
    /// Sums run over x outside and y inside; a negative variance counts as 0, NaN stays NaN.
    void (*windowScores)(const WindowColumn& column, double* scores);
};

/// The kernels of the fastest target that is allowed.
const ColourKernels& colourKernels();

/// The kernels of the fastest target up to `highest`.
const ColourKernels& colourKernels(KernelTarget highest);

}  // namespace orv
