#pragma once

#include "wavelets/transform/wavelet_filter.h"

namespace orv {

/// Writes the published taps of all wavelets into four banks of kWaveletCount filters each,
/// indexed by the wavelet number.
///
///     analysis   low[i]  = sum_k x[2i + k - offset] taps[k], high alike
///     synthesis  x[i]    = sum_k a[i + k - offset] low.taps[k] + sum_k b[i + k - offset] high.taps[k]
///
/// The synthesis filters of a wavelet undo its analysis filters alone. Taps are rounded as they
/// were published: a pass and its inverse are exact to about 2e-9 for wavelets 0 to 2 and 1e-6 for
/// 3 to 5.
///
/// Shapes:  four arrays of kWaveletCount filters; taps beyond a filter's length stay as they are.
/// Fails:   never.
/// Source:  [Daubechies1988], [CohenDaubechiesFeauveau1992], [VillasenorBelzerLiao1995]
void InitWaveletFilters(WaveletFilter* analysisLow, WaveletFilter* analysisHigh,
                        WaveletFilter* synthesisLow, WaveletFilter* synthesisHigh);

}  // namespace orv
