#pragma once

namespace orv {

/// Wavelet numbers: 0 Daubechies with 6 taps, 1 Haar, then the biorthogonal 5/3, 9/7, 13/11, 9/3.
inline constexpr int kWaveletCount = 6;

/// One filter of a bank: tap k acts on the sample at distance k - offset.
///
/// Taps are applied as they are listed, never reversed; those from `length` on are neither read
/// nor set.
struct WaveletFilter {
    int length;
    int offset;
    double taps[25];
};

}  // namespace orv
