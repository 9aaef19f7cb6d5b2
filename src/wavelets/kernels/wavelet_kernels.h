#pragma once

#include <cstddef>

#include "base/kernel_target.h"
#include "wavelets/transform/wavelet_filter.h"

namespace orv {

/// The sums of one wavelet level, many lines at a time. Every sum starts at 0 and takes the taps
/// in ascending order, as FwtVector and IwtVector do; all targets give the same bits.
///
/// Filters of the published shapes run with their lengths and offsets as constants, others in
/// loops. No memory of a call may overlap with what it writes.
struct WaveletKernels {
    /// Low and high results of one position along x, for all rows.
    ///
    ///     low(y) = sum_k columns[left - low.offset + k][y] low.taps[k],  high alike
    ///
    /// with left = max(low.offset, high.offset). Row 2i goes to even[i], row 2i + 1 to odd[i].
    void (*analyseAcross)(const double* const* columns, std::size_t rows,
                          const WaveletFilter& low, const WaveletFilter& high, double* lowEven,
                          double* lowOdd, double* highEven, double* highOdd);

    /// Low and high results along a line whose even and odd samples lie apart.
    ///
    ///     lowResult[i] = sum_k x(2i + k - low.offset) low.taps[k],  x(2j) = even[j], x(2j + 1) = odd[j]
    ///
    /// for i below `count`; the arrays reach as far beyond both ends as the filters do.
    void (*analyseAlong)(const double* even, const double* odd, std::size_t count,
                         const WaveletFilter& low, const WaveletFilter& high, double* lowResult,
                         double* highResult);

    /// 2 count samples of a line from its low and high half; IwtVector without the sums' zero
    /// terms, which change no bit: a sum that starts at +0 never becomes -0.
    ///
    /// The arrays reach as far beyond both ends as the filters do.
    void (*synthesiseAlong)(const double* lowHalf, const double* highHalf, std::size_t count,
                            const WaveletFilter& low, const WaveletFilter& high,
                            double* result);

    /// Columns 2t and 2t + 1 from columns of the low and the high half along x.
    ///
    /// lowColumns[0] is column t - low.offset / 2 of the low half, highColumns alike.
    void (*synthesiseAcross)(const double* const* lowColumns, const double* const* highColumns,
                             std::size_t rows, const WaveletFilter& low,
                             const WaveletFilter& high, double* even, double* odd);
};

/// The kernels of the best target.
const WaveletKernels& waveletKernels();
/// The kernels of one target, or of the best below it that this build and processor have.
const WaveletKernels& waveletKernels(KernelTarget highest);

}  // namespace orv
