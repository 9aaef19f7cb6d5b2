#pragma once

#include <cstddef>

#include "base/kernel_target.h"
#include "filters/kernels/column_block.h"

namespace orv {

/// Coefficients of out(i) = gain in(i) + near out(i - 1) + middle out(i - 2) + far out(i - 3).
template <class Sample>
struct RecursionCoefficients {
    Sample gain;
    Sample near;
    Sample middle;
    Sample far;
};

/// The three columns before the one that is computed, the nearest first.
template <class Sample>
struct RecursionHistory {
    const Sample* near;
    const Sample* middle;
    const Sample* far;
};

/// Neighbouring columns that the recursion along x runs over, in its direction.
template <class Sample>
struct ColumnRun {
    const Sample* in;       ///< the first column that is read
    Sample* out;            ///< the first column that is written; may be `in`
    std::ptrdiff_t stride;  ///< from one column to the next, negative for a run to the left
    int columns;
    int length;  ///< samples of a column
};

/// Hot loops of the recursive blur: one line a SIMD lane, each sample with the roundings and in
/// the order of the formula from left to right, so that every target gives the same bits.
template <class Sample>
struct RecursionKernels {
    /// The recursion along x for all rows of a run; the history stands before its first column.
    void (*runAlongX)(const RecursionCoefficients<Sample>& coefficients,
                      const ColumnRun<Sample>& run, const RecursionHistory<Sample>& history);

    /// The recursion down and up each column in place, with reflected ends.
    ///
    /// Shapes:  `strip` (length + 3) * lanes samples; lanes 16, 32 or 64; length at least 3.
    void (*blurColumns)(const RecursionCoefficients<Sample>& coefficients,
                        const ColumnBlock<Sample>& block, Sample* strip, int lanes);
};

/// The loops for planes of floats and of doubles.
struct RecursiveBlurKernels {
    RecursionKernels<float> floats;
    RecursionKernels<double> doubles;
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const RecursiveBlurKernels& recursiveBlurKernels();
/// The table of one target; null when the build has no code for it.
const RecursiveBlurKernels* recursiveBlurKernels(KernelTarget target);

}  // namespace orv
