#include "wavelets/shrinkage/magnitude_selection.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "wavelets/shrinkage/magnitude_bits.h"
#include "wavelets/working_array.h"

namespace orv {

namespace {

// Eleven bits of exponent and four of mantissa: a bucket spans 6 per cent of its magnitude.
constexpr int kBucketShift = 48;
constexpr std::size_t kBuckets = std::size_t{1} << 15;
// Neighbouring coefficients often share a bucket; four counts let them not wait for each other.
constexpr std::size_t kCounters = 4;
constexpr std::uint64_t kMagnitudeBits = ~(std::uint64_t{1} << 63);

constexpr std::size_t kSample = 4096;
// How far beside the wanted place of the sample the bounds are taken: four deviations.
constexpr std::size_t kMargin = 128;
constexpr std::size_t kChunk = 1024;

/// The bits of |v|, which ascend with it.
std::uint64_t magnitudeBits(double v) {
    return bitsOf(v) & kMagnitudeBits;
}

std::uint64_t* bitsIn(const AlignedBlock& block) {
    return static_cast<std::uint64_t*>(block.data());
}

std::uint64_t countOf(std::span<const Coefficients> runs) {
    std::uint64_t count = 0;
    for (const Coefficients& run : runs) {
        count += run.count;
    }
    return count;
}

/// Two magnitudes between which the wanted one probably lies.
struct Bounds {
    std::uint64_t low;
    std::uint64_t high;
};

// One position is drawn from each of kSample equal stretches of the runs.
Bounds sampledBounds(std::span<const Coefficients> runs, std::uint64_t count,
                     std::uint64_t position) {
    std::array<std::uint64_t, kSample> sample;
    const std::uint64_t stretch = count / kSample;
    std::uint64_t state = 1;
    std::uint64_t before = 0;
    std::size_t run = 0;
    for (std::size_t k = 0; k < kSample; ++k) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const std::uint64_t at = k * stretch + (state >> 33) % stretch;
        while (at - before >= runs[run].count) {
            before += runs[run].count;
            ++run;
        }
        sample[k] = magnitudeBits(runs[run].first[at - before]);
    }
    std::sort(sample.begin(), sample.end());
    const auto place = static_cast<std::size_t>(static_cast<double>(position) /
                                                static_cast<double>(count) * kSample);
    return {place < kMargin ? 0 : sample[place - kMargin],
            place + kMargin < kSample ? sample[place + kMargin] : kMagnitudeBits};
}

/// Finds the wanted magnitude between bounds; false when it lies beside them, or when too many
/// lie between.
bool selectBetween(std::span<const Coefficients> runs, const Bounds& bounds,
                   std::uint64_t count, std::uint64_t position, const char* message,
                   double* magnitude) {
    const std::size_t most = count / 6;
    const AlignedBlock block = acquireWorkingArray(most + kChunk, message);
    std::uint64_t* const first = bitsIn(block);
    std::uint64_t* last = first;
    std::uint64_t below = 0;
    for (const Coefficients& run : runs) {
        for (std::size_t from = 0; from < run.count; from += kChunk) {
            if (static_cast<std::size_t>(last - first) > most) {
                return false;
            }
            const std::size_t to = std::min(from + kChunk, run.count);
            for (std::size_t i = from; i < to; ++i) {
                const std::uint64_t bits = magnitudeBits(run.first[i]);
                below += bits < bounds.low ? 1U : 0U;
                *last = bits;
                last += bits >= bounds.low && bits <= bounds.high ? 1 : 0;
            }
        }
    }
    if (position < below || position - below >= static_cast<std::uint64_t>(last - first)) {
        return false;
    }
    std::uint64_t* const wanted = first + (position - below);
    std::nth_element(first, wanted, last);
    *magnitude = magnitudeOf(*wanted);
    return true;
}

bool eightZeros(const double* values) {
    std::uint64_t any = 0;
    for (int i = 0; i < 8; ++i) {
        any |= magnitudeBits(values[i]);
    }
    return any == 0;
}

/// Counts the magnitudes by bucket; zeros, of which a padded plane is full, eight at a time.
void countBuckets(const Coefficients& run, std::uint64_t* counts) {
    const double* const values = run.first;
    std::size_t i = 0;
    for (; i + 8 <= run.count; i += 8) {
        if (eightZeros(values + i)) {
            counts[0] += 8;
            continue;
        }
        for (std::size_t k = 0; k < 8; ++k) {
            ++counts[(magnitudeBits(values[i + k]) >> kBucketShift) * kCounters +
                     k % kCounters];
        }
    }
    for (; i < run.count; ++i) {
        ++counts[(magnitudeBits(values[i]) >> kBucketShift) * kCounters];
    }
}

/// Appends the magnitudes other than 0 of one bucket; `to` has room for one more.
std::uint64_t* gatherBucket(const Coefficients& run, std::uint64_t bucket, std::uint64_t* to) {
    for (std::size_t i = 0; i < run.count; ++i) {
        const std::uint64_t bits = magnitudeBits(run.first[i]);
        *to = bits;
        to += (bits >> kBucketShift) == bucket && bits != 0 ? 1 : 0;
    }
    return to;
}

/// Finds the wanted magnitude by counting buckets and then looking into one.
double selectByBuckets(std::span<const Coefficients> runs, std::uint64_t position,
                       const char* message) {
    const AlignedBlock countBlock = acquireWorkingArray(kBuckets * kCounters, message);
    std::uint64_t* const counts = bitsIn(countBlock);
    std::fill_n(counts, kBuckets * kCounters, 0U);
    for (const Coefficients& run : runs) {
        countBuckets(run, counts);
    }
    std::uint64_t bucket = 0;
    std::uint64_t inBucket = 0;
    std::uint64_t below = 0;
    for (; bucket < kBuckets; ++bucket) {
        inBucket = 0;
        for (std::size_t k = 0; k < kCounters; ++k) {
            inBucket += counts[bucket * kCounters + k];
        }
        if (below + inBucket > position) {
            break;
        }
        below += inBucket;
    }
    const AlignedBlock block = acquireWorkingArray(inBucket + 1, message);
    std::uint64_t* const first = bitsIn(block);
    std::uint64_t* last = first;
    for (const Coefficients& run : runs) {
        last = gatherBucket(run, bucket, last);
    }
    // What the bucket holds beyond the gathered are zeros, which come first.
    const std::uint64_t inFront = inBucket - static_cast<std::uint64_t>(last - first);
    if (position - below < inFront) {
        return 0.0;
    }
    std::uint64_t* const wanted = first + (position - below - inFront);
    std::nth_element(first, wanted, last);
    return magnitudeOf(*wanted);
}

}  // namespace

double magnitudeAt(std::span<const Coefficients> runs, std::uint64_t zeros,
                   std::uint64_t position, const char* message) {
    if (position < zeros) {
        return 0.0;
    }
    const std::uint64_t count = countOf(runs);
    double magnitude = 0.0;
    if (count >= 8 * kSample &&
        selectBetween(runs, sampledBounds(runs, count, position - zeros), count,
                      position - zeros, message, &magnitude)) {
        return magnitude;
    }
    return selectByBuckets(runs, position - zeros, message);
}

}  // namespace orv
