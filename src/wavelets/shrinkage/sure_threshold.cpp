#include "wavelets/shrinkage/sure_threshold.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "wavelets/kernels/shrink_kernels.h"
#include "wavelets/shrinkage/magnitude_bits.h"
#include "wavelets/working_array.h"

namespace orv {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kBuckets = 2048;
// Below this many, sorting costs less than looking for what needs no sort.
constexpr std::size_t kFewMagnitudes = 1024;
// 32 octaves below the largest magnitude are told apart; what is smaller shares a bucket.
constexpr std::uint64_t kOctaves = std::uint64_t{32} << 52;
// Bounds of the risk stay finite for sums below this; one that is no number isn't below it.
constexpr double kLargestSum = 1e280;

/// The formula, in its order; `sum` holds s^2 already.
double riskOf(double square, double n, double i, double sum) {
    // quirk: sure-risk
    return square * (n - i) + sum + (n - 2.0 * i);
}

/// Sorts by the bits, which ascend with the magnitudes and put what is no number last.
void sortMagnitudes(double* first, double* last) {
    std::sort(first, last, [](double a, double b) { return bitsOf(a) < bitsOf(b); });
}

/// The threshold by the definition: all sorted, every risk formed.
double sortedThreshold(double* magnitudes, std::size_t count, std::size_t zeros) {
    sortMagnitudes(magnitudes, magnitudes + count);
    const double n = static_cast<double>(count + zeros);
    double sum = 0.0;
    double best = zeros > 0 ? 0.0 : magnitudes[0];
    // The risks of the zeros fall by 2 from n; the last of them is the least.
    double least = zeros > 0 ? n - 2.0 * static_cast<double>(zeros - 1) : 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        const double square = magnitudes[k] * magnitudes[k];
        sum += square;
        const double risk = riskOf(square, n, static_cast<double>(zeros + k), sum);
        if ((zeros == 0 && k == 0) || risk < least) {
            least = risk;
            best = magnitudes[k];
        }
    }
    return best;
}

/// A range of neighbouring magnitudes: all that can still hold the least risk.
struct Candidates {
    double* first;
    std::size_t count;
    double below;       ///< how many magnitudes, zeros included, are smaller
    double sumBelow;    ///< the sum of their squares
    std::uint64_t low;  ///< bounds of the bits, both included
    std::uint64_t high;
    bool open;  ///< the range may hold magnitudes below `low` too
};

/// Buckets of equal width in the bits of a magnitude, 2^shift wide.
struct Buckets {
    std::uint64_t low;
    int shift;
    std::size_t used;
    std::array<std::uint32_t, kBuckets> counts;
    std::array<double, kBuckets> sums;    ///< of the squares
    std::array<double, kBuckets> lowest;  ///< no risk of the bucket lies below

    std::size_t of(double magnitude) const {
        const std::uint64_t bits = bitsOf(magnitude);
        return static_cast<std::size_t>((bits > low ? bits - low : 0) >> shift);
    }
    double edge(std::size_t bucket) const {
        return magnitudeOf(low + (static_cast<std::uint64_t>(bucket) << shift));
    }
};

/// Finds the threshold from bounds of the risk over ranges of magnitudes.
class ThresholdSearch {
  public:
    ThresholdSearch(double n, double zeros)
        : n_(n), zeros_(zeros), zerosRisk_(zeros > 0.0 ? n - 2.0 * (zeros - 1.0) : kInfinity) {
        reached_ = zerosRisk_;
    }

    /// Drops what bounds rule out; false once little or nothing could be.
    bool narrow(Candidates& range);
    /// The threshold among what is left, or NaN where rounding could decide.
    double decide(const Candidates& range) const;

  private:
    void fillBuckets(const Candidates& range);
    void boundRisks(const Candidates& range);
    void keepBuckets(Candidates& range, std::size_t first, std::size_t last) const;

    /// Many times what a risk as computed can be off the exact one, near the least.
    ///
    /// A sum of n squares is off by at most n roundings of it, in whatever order it is taken,
    /// and near the least risk no part of the formula exceeds that risk by more than 2n.
    double errorBound() const {
        return 8.0 * (n_ + 64.0) * std::numeric_limits<double>::epsilon() *
               (std::fabs(reached_) + 3.0 * n_);
    }
    /// The same for candidates up to `largest`, where `sum` is that of all squares up to it: zeros
    /// are summed without rounding, and what lies above isn't summed.
    double errorBound(const Candidates& range, double largest, double sum) const {
        const double summed = range.below - zeros_ + static_cast<double>(range.count);
        return 8.0 * std::numeric_limits<double>::epsilon() *
               ((summed + 64.0) * sum + 64.0 * (largest * largest + 1.0) * n_);
    }

    double n_;
    double zeros_;
    double zerosRisk_;
    double reached_;
    Buckets buckets_;
};

void ThresholdSearch::fillBuckets(const Candidates& range) {
    const std::uint64_t span = range.high - range.low;
    buckets_.low = range.low;
    buckets_.shift = 0;
    while (span >> buckets_.shift >= kBuckets) {
        ++buckets_.shift;
    }
    buckets_.used = static_cast<std::size_t>(span >> buckets_.shift) + 1;
    std::fill_n(buckets_.counts.begin(), buckets_.used, 0U);
    std::fill_n(buckets_.sums.begin(), buckets_.used, 0.0);
    for (std::size_t k = 0; k < range.count; ++k) {
        const double magnitude = range.first[k];
        const std::size_t bucket = buckets_.of(magnitude);
        ++buckets_.counts[bucket];
        buckets_.sums[bucket] += magnitude * magnitude;
    }
}

// Every risk of a bucket is at least that of its lower edge with its last position and the sum
// in front of it; the one at its last position is at most that of the upper edge and the sum
// behind it.
void ThresholdSearch::boundRisks(const Candidates& range) {
    double below = range.below;
    double sumBelow = range.sumBelow;
    for (std::size_t b = 0; b < buckets_.used; ++b) {
        buckets_.lowest[b] = kInfinity;
        if (buckets_.counts[b] == 0) {
            continue;
        }
        const double from = b == 0 && range.open ? 0.0 : buckets_.edge(b);
        const double to = buckets_.edge(b + 1);
        const double last = below + buckets_.counts[b] - 1.0;
        const double sumTo = sumBelow + buckets_.sums[b];
        buckets_.lowest[b] = riskOf(from * from, n_, last, sumBelow);
        reached_ = std::min(reached_, riskOf(to * to, n_, last, sumTo));
        below = last + 1.0;
        sumBelow = sumTo;
    }
}

void ThresholdSearch::keepBuckets(Candidates& range, std::size_t first,
                                  std::size_t last) const {
    for (std::size_t b = 0; b < first; ++b) {
        range.below += buckets_.counts[b];
        range.sumBelow += buckets_.sums[b];
    }
    // What is dropped moves behind what is kept: a search that fails sorts all.
    double* to = range.first;
    for (std::size_t k = 0; k < range.count; ++k) {
        const double magnitude = range.first[k];
        const std::size_t bucket = buckets_.of(magnitude);
        range.first[k] = *to;
        *to = magnitude;
        to += static_cast<std::size_t>(bucket >= first && bucket <= last);
    }
    range.count = static_cast<std::size_t>(to - range.first);
    if (first > 0) {
        range.low = buckets_.low + (static_cast<std::uint64_t>(first) << buckets_.shift);
        range.open = false;
    }
    const std::uint64_t end = static_cast<std::uint64_t>(last + 1) << buckets_.shift;
    range.high = std::min(range.high, buckets_.low + end - 1);
}

bool ThresholdSearch::narrow(Candidates& range) {
    fillBuckets(range);
    boundRisks(range);
    const double limit = reached_ + errorBound();
    std::size_t first = buckets_.used;
    std::size_t last = 0;
    for (std::size_t b = 0; b < buckets_.used; ++b) {
        if (buckets_.lowest[b] <= limit) {
            first = std::min(first, b);
            last = b;
        }
    }
    if (first == buckets_.used) {
        // The zeros won against all.
        range.count = 0;
        return false;
    }
    const std::size_t before = range.count;
    keepBuckets(range, first, last);
    return range.count < before / 4 * 3;
}

double ThresholdSearch::decide(const Candidates& range) const {
    sortMagnitudes(range.first, range.first + range.count);
    double sum = range.sumBelow;
    double best = 0.0;
    double least = zerosRisk_;
    double second = kInfinity;
    for (std::size_t k = 0; k < range.count; ++k) {
        const double magnitude = range.first[k];
        sum += magnitude * magnitude;
        const double risk =
            riskOf(magnitude * magnitude, n_, range.below + static_cast<double>(k), sum);
        if (magnitude == best) {
            least = std::min(least, risk);
        } else if (risk < least) {
            second = least;
            least = risk;
            best = magnitude;
        } else {
            second = std::min(second, risk);
        }
    }
    // Equal magnitudes give one threshold, whichever of them has the least risk.
    const double largest = range.count > 0 ? range.first[range.count - 1] : 0.0;
    return second - least > 2.0 * errorBound(range, largest, sum)
               ? best
               : std::numeric_limits<double>::quiet_NaN();
}

/// The threshold from a few of the magnitudes, or NaN where they don't settle it.
double searchedThreshold(double* magnitudes, std::size_t count, std::size_t zeros) {
    const double largest = shrinkKernels().largestMagnitude(magnitudes, count);
    const std::uint64_t high = bitsOf(largest);
    const std::uint64_t low = high > kOctaves ? high - kOctaves : 0;
    ThresholdSearch search(static_cast<double>(count + zeros), static_cast<double>(zeros));
    Candidates range{magnitudes, count, static_cast<double>(zeros), 0.0, low, high, true};
    while (range.count > kFewMagnitudes / 4 && search.narrow(range)) {
    }
    return search.decide(range);
}

}  // namespace

double sureThresholdOfMagnitudes(double* magnitudes, std::size_t count, std::size_t zeros) {
    if (count == 0) {
        return 0.0;
    }
    if (count >= kFewMagnitudes &&
        shrinkKernels().sumOfSquares(magnitudes, count) < kLargestSum) {
        const double threshold = searchedThreshold(magnitudes, count, zeros);
        if (!std::isnan(threshold)) {
            return threshold;
        }
    }
    return sortedThreshold(magnitudes, count, zeros);
}

double sureThreshold(const double* values, int count) {
    const std::size_t n = static_cast<std::size_t>(std::max(count, 0));
    const AlignedBlock block =
        acquireWorkingArray(n, "sureThreshold: Unable to malloc working array!\n");
    shrinkKernels().magnitudes(values, doublesOf(block), n);
    return sureThresholdOfMagnitudes(doublesOf(block), n, /*zeros=*/0);
}

}  // namespace orv
