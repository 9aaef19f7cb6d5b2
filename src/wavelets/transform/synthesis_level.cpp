#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "wavelets/kernels/wavelet_kernels.h"
#include "wavelets/transform/periodic_line.h"
#include "wavelets/transform/wavelet_levels.h"

namespace orv {

namespace {

std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

/// How far from t the half line is read for the samples 2t and 2t + 1.
struct HalfReach {
    explicit HalfReach(const WaveletFilter& filter)
        : left(filter.offset / 2), right((filter.length - filter.offset) / 2) {}
    HalfReach(const WaveletFilter& low, const WaveletFilter& high)
        : left(std::max(HalfReach(low).left, HalfReach(high).left)),
          right(std::max(HalfReach(low).right, HalfReach(high).right)) {}

    int left;
    int right;
};

/// A column of one band with its periodic margins in front and behind.
class HalfLine {
  public:
    /// For reading positions begin to end - 1 of a half line of n samples, of which `kept` are.
    HalfLine(BandRange kept, int begin, int end, int n)
        : first_(begin),
          kept_(kept),
          copied_{std::max(kept.begin, begin), std::min(kept.end, end)},
          memory_(sizeOf(end - begin), 0.0) {
        for (int i = begin; i < end; ++i) {
            const int from = keptPosition(i, kept, n);
            if ((i < kept.begin || i >= kept.end) && from < kept.end) {
                margins_.push_back({sizeOf(i - begin), sizeOf(from - kept.begin)});
            }
        }
    }

    /// Takes over a column whose first sample is the first kept one; null stands for zeros.
    void read(const double* column) {
        if (column == nullptr) {
            std::fill(memory_.begin(), memory_.end(), 0.0);
            return;
        }
        if (copied_.size() > 0) {
            std::memcpy(memory_.data() + (copied_.begin - first_),
                        column + (copied_.begin - kept_.begin),
                        sizeOf(copied_.size()) * sizeof(double));
        }
        for (const Copy& copy : margins_) {
            memory_[copy.to] = column[copy.from];
        }
    }

    const double* at(int position) const { return memory_.data() + (position - first_); }

  private:
    struct Copy {
        std::size_t to;
        std::size_t from;
    };

    int first_;
    BandRange kept_;
    BandRange copied_;
    std::vector<double> memory_;
    std::vector<Copy> margins_;
};

/// The columns of one half along x, rebuilt along y, the last few of them.
class RebuiltColumns {
  public:
    RebuiltColumns(const ConstBandView& lowY, const ConstBandView& highY, int halfWidth,
                   int halfHeight, BandRange pairs, const WaveletFilter& low,
                   const WaveletFilter& high, int held)
        : lowY_(lowY),
          highY_(highY),
          halfWidth_(halfWidth),
          pairs_(pairs),
          low_(low),
          high_(high),
          reach_(low, high),
          lowLine_(lowY.yRange, pairs.begin - reach_.left, pairs.end + reach_.right,
                   halfHeight),
          highLine_(highY.yRange, pairs.begin - reach_.left, pairs.end + reach_.right,
                    halfHeight),
          held_(held),
          stride_(2 * sizeOf(pairs.size()) + 8),
          memory_(sizeOf(held) * stride_) {}

    void rebuild(const WaveletKernels& kernels, int t) {
        lowLine_.read(keptColumn(lowY_, t));
        highLine_.read(keptColumn(highY_, t));
        kernels.synthesiseAlong(lowLine_.at(pairs_.begin), highLine_.at(pairs_.begin),
                                sizeOf(pairs_.size()), low_, high_, slot(t));
    }

    double* slot(int t) {
        return memory_.data() + sizeOf(keptPosition(t, {0, 0}, held_)) * stride_;
    }

  private:
    const double* keptColumn(const ConstBandView& band, int t) const {
        const int x = keptPosition(t, band.xRange, halfWidth_);
        return x < band.xRange.end ? band.column(x) : nullptr;
    }

    const ConstBandView& lowY_;
    const ConstBandView& highY_;
    int halfWidth_;
    BandRange pairs_;
    const WaveletFilter& low_;
    const WaveletFilter& high_;
    HalfReach reach_;
    HalfLine lowLine_;
    HalfLine highLine_;
    int held_;
    std::size_t stride_;
    std::vector<double> memory_;
};

/// The pairs of positions 2t and 2t + 1 that a range touches.
BandRange pairsOf(BandRange samples) {
    return {floorQuotient(samples.begin, 2), floorQuotient(samples.end + 1, 2)};
}

}  // namespace

BandRange synthesisRange(BandRange samples, int n, FilterReach reach) {
    const int half = n / 2;
    // Even ends, as analysisRange gives them.
    const int begin = 2 * floorQuotient(samples.begin - reach.left, 4);
    const int end = 2 * (floorQuotient(samples.end + reach.right, 4) + 1);
    return end - begin >= half ? BandRange{0, half} : BandRange{begin, end};
}

void synthesiseLevel(const LevelBands<ConstBandView>& bands, int width, int height,
                     const WaveletFilter& low, const WaveletFilter& high,
                     const BandView& target) {
    const WaveletKernels& kernels = waveletKernels();
    const HalfReach reach(low, high);
    const BandRange xPairs = pairsOf(target.xRange);
    const BandRange yPairs = pairsOf(target.yRange);
    const int held = reach.left + reach.right + 1;
    RebuiltColumns lowX(bands.lowLow, bands.lowHigh, width / 2, height / 2, yPairs, low, high,
                        held);
    RebuiltColumns highX(bands.highLow, bands.highHigh, width / 2, height / 2, yPairs, low,
                         high, held);
    std::vector<const double*> lowColumns(sizeOf(held));
    std::vector<const double*> highColumns(sizeOf(held));
    const auto rows = sizeOf(target.yRange.size());
    std::vector<double> unused(rows);
    int next = xPairs.begin - reach.left;
    for (int t = xPairs.begin; t < xPairs.end; ++t) {
        for (; next <= t + reach.right; ++next) {
            lowX.rebuild(kernels, next);
            highX.rebuild(kernels, next);
        }
        for (int j = 0; j < held; ++j) {
            lowColumns[sizeOf(j)] = lowX.slot(t - reach.left + j);
            highColumns[sizeOf(j)] = highX.slot(t - reach.left + j);
        }
        const int oddX = 2 * t + 1;
        kernels.synthesiseAcross(
            lowColumns.data() + (reach.left - HalfReach(low).left),
            highColumns.data() + (reach.left - HalfReach(high).left), rows, low, high,
            target.column(2 * t),
            oddX < target.xRange.end ? target.column(oddX) : unused.data());
    }
}

}  // namespace orv
