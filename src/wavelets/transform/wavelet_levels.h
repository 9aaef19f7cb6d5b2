#pragma once

#include <cstddef>
#include <vector>

#include "wavelets/transform/band_range.h"
#include "wavelets/transform/wavelet_filter.h"

namespace orv {

/// A band, or a plane, of which only some periodic ranges are kept: sample (x, y) stands at
/// samples[(x - xRange.begin) stride + y - yRange.begin], and all others are +0.
struct BandView {
    double* samples;
    std::size_t stride;
    BandRange xRange;
    BandRange yRange;

    double* column(int x) const {
        return samples + static_cast<std::size_t>(x - xRange.begin) * stride;
    }
};

/// Likewise, for reading.
struct ConstBandView {
    ConstBandView(const double* first, std::size_t columnStride, BandRange x, BandRange y)
        : samples(first), stride(columnStride), xRange(x), yRange(y) {}
    ConstBandView(const BandView& view)  // NOLINT: as a pointer converts
        : ConstBandView(view.samples, view.stride, view.xRange, view.yRange) {}

    const double* column(int x) const {
        return samples + static_cast<std::size_t>(x - xRange.begin) * stride;
    }

    const double* samples;
    std::size_t stride;
    BandRange xRange;
    BandRange yRange;
};

/// The four bands of a level.
template <class View>
struct LevelBands {
    View lowLow;
    View highLow;  // high along x
    View lowHigh;  // high along y
    View highHigh;
};

/// How far a filter pair reaches from the origin of its taps.
struct FilterReach {
    FilterReach(const WaveletFilter& low, const WaveletFilter& high);

    int left;
    int right;
};

/// The range of results that a range of samples reaches in one pass over a periodic line of n
/// samples, from an even position to an even one where it isn't the whole half line.
BandRange analysisRange(BandRange samples, int n, FilterReach reach);

/// The range of a half line of n / 2 positions from which a range of samples is rebuilt.
BandRange synthesisRange(BandRange samples, int n, FilterReach reach);

/// One level of FwtImage over a periodic width x height plane of which `source` is kept.
///
/// Shapes:  width and height even; all four bands have the ranges that analysisRange() gives and
///          must not overlap with the source, whose yRange begins at an even position.
/// Cost:    one reading of the source and one writing of the bands; a few lines of memory.
void analyseLevel(const ConstBandView& source, int width, int height, const WaveletFilter& low,
                  const WaveletFilter& high, const LevelBands<BandView>& bands);

/// One level of IwtImage: the samples of `target` from the bands.
///
/// Shapes:  width and height even; the low band is kept at least where synthesisRange() needs
///          it, and nothing else overlaps with the target, whose ranges begin at even positions.
/// Cost:    one reading of the bands and one writing of the target; a few lines of memory.
void synthesiseLevel(const LevelBands<ConstBandView>& bands, int width, int height,
                     const WaveletFilter& low, const WaveletFilter& high,
                     const BandView& target);

}  // namespace orv
