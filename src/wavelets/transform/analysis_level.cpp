#include <algorithm>
#include <cstddef>
#include <vector>

#include "wavelets/kernels/wavelet_kernels.h"
#include "wavelets/transform/periodic_line.h"
#include "wavelets/transform/wavelet_levels.h"

namespace orv {

namespace {

/// A line along y with even and odd samples apart and room for the margins.
class SplitLine {
  public:
    /// For kept samples and results of these ranges on a line of n samples.
    SplitLine(BandRange samples, BandRange results, int n, FilterReach reach)
        : first_(evenBelow(std::min(samples.begin, 2 * results.begin - reach.left))),
          half_(halfSize(first_, std::max(samples.end, 2 * results.end + reach.right))),
          memory_(2 * half_, 0.0) {
        const int last = 2 * (results.end - 1) + reach.right;
        for (int i = 2 * results.begin - reach.left; i <= last; ++i) {
            const int from = keptPosition(i, samples, n);
            if ((i < samples.begin || i >= samples.end) && from < samples.end) {
                margins_.push_back({placeOf(i), placeOf(from)});
            }
        }
    }

    double* even(int position) { return memory_.data() + placeOf(position); }
    double* odd(int position) { return even(position) + half_; }

    /// Copies what the margins repeat; all else in them is 0.
    void extend() {
        for (const Copy& copy : margins_) {
            memory_[copy.to] = memory_[copy.from];
        }
    }

  private:
    struct Copy {
        std::size_t to;
        std::size_t from;
    };

    static int evenBelow(int i) { return i - (i & 1); }
    static std::size_t halfSize(int first, int end) {
        return static_cast<std::size_t>((end - first + 1) / 2 + 1);
    }
    std::size_t placeOf(int position) const {
        const auto i = static_cast<std::size_t>(position - first_);
        return i / 2 + (i % 2) * half_;
    }

    int first_;
    std::size_t half_;
    std::vector<double> memory_;
    std::vector<Copy> margins_;
};

}  // namespace

FilterReach::FilterReach(const WaveletFilter& low, const WaveletFilter& high)
    : left(std::max(low.offset, high.offset)),
      right(std::max(low.length - low.offset - 1, high.length - high.offset - 1)) {}

BandRange analysisRange(BandRange samples, int n, FilterReach reach) {
    const int half = n / 2;
    if (samples.size() >= n) {
        return {0, half};
    }
    // Two positions of rounding at either end cost less than lines that begin at odd ones.
    const int begin = 2 * floorQuotient(samples.begin - reach.right, 4);
    const int end = 2 * (floorQuotient(samples.end - 1 + reach.left, 4) + 1);
    return end - begin >= half ? BandRange{0, half} : BandRange{begin, end};
}

void analyseLevel(const ConstBandView& source, int width, int height, const WaveletFilter& low,
                  const WaveletFilter& high, const LevelBands<BandView>& bands) {
    const WaveletKernels& kernels = waveletKernels();
    const FilterReach reach(low, high);
    const BandRange xRange = bands.lowLow.xRange;
    const BandRange yRange = bands.lowLow.yRange;
    const auto rows = static_cast<std::size_t>(source.yRange.size());
    const auto results = static_cast<std::size_t>(yRange.size());
    const std::vector<double> zeros(rows, 0.0);
    std::vector<const double*> columns(static_cast<std::size_t>(reach.left + reach.right + 1));
    SplitLine lowLine(source.yRange, yRange, height, reach);
    SplitLine highLine(source.yRange, yRange, height, reach);
    const int firstRow = source.yRange.begin;
    const int firstResult = 2 * yRange.begin;
    for (int i = xRange.begin; i < xRange.end; ++i) {
        for (int j = -reach.left; j <= reach.right; ++j) {
            const int x = keptPosition(2 * i + j, source.xRange, width);
            columns[static_cast<std::size_t>(j + reach.left)] =
                x < source.xRange.end ? source.column(x) : zeros.data();
        }
        kernels.analyseAcross(columns.data(), rows, low, high, lowLine.even(firstRow),
                              lowLine.odd(firstRow), highLine.even(firstRow),
                              highLine.odd(firstRow));
        lowLine.extend();
        highLine.extend();
        kernels.analyseAlong(lowLine.even(firstResult), lowLine.odd(firstResult), results, low,
                             high, bands.lowLow.column(i), bands.lowHigh.column(i));
        kernels.analyseAlong(highLine.even(firstResult), highLine.odd(firstResult), results,
                             low, high, bands.highLow.column(i), bands.highHigh.column(i));
    }
}

}  // namespace orv
