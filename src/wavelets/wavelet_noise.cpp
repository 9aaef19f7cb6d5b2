#include "wavelets/wavelet_noise.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "images/real_image.h"
#include "wavelets/working_array.h"

namespace orv {

namespace {

// quirk: noise-factor
constexpr double kNoiseFactor = 1.4718111371948752;

// Eleven bits of exponent and four of mantissa: a bucket spans 6 per cent of its magnitude.
constexpr int kBucketShift = 48;
constexpr std::size_t kBuckets = std::size_t{1} << 15;
// Neighbouring coefficients often share a bucket; four counts let them not wait for each other.
constexpr std::size_t kCounters = 4;
constexpr std::uint64_t kMagnitudeBits = ~(std::uint64_t{1} << 63);

/// The bits of |v|, which ascend with it.
std::uint64_t magnitudeBits(double v) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    return bits & kMagnitudeBits;
}

/// How many details the estimate takes: the truncation of three quarters of the plane.
long long detailCount(int height, int width) {
    const long long all = static_cast<long long>(height) * width;
    return all - (all + 3) / 4;
}

/// The details that enter the estimate, a run for each column.
std::vector<Coefficients> detailsOf(const RealImage& plane, int height, int width) {
    const long long outside = static_cast<long long>(height) * width -
                              static_cast<long long>(height / 2) * (width / 2);
    const long long dropped = outside - detailCount(height, width);
    const int droppedRows = static_cast<int>(dropped / width);
    const int droppedLast = static_cast<int>(dropped % width);
    std::vector<Coefficients> runs;
    runs.reserve(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) {
        const int from = x < width / 2 ? height / 2 : 0;
        const int to = height - droppedRows - (x >= width - droppedLast ? 1 : 0);
        if (to > from) {
            runs.push_back({plane.row(x) + from, static_cast<std::size_t>(to - from)});
        }
    }
    return runs;
}

bool eightZeros(const double* values) {
    std::uint64_t any = 0;
    for (int i = 0; i < 8; ++i) {
        any |= magnitudeBits(values[i]);
    }
    return any == 0;
}

/// Counts the magnitudes by bucket; zeros, of which a padded plane is full, eight at a time.
void countBuckets(const Coefficients& details, std::uint64_t* counts) {
    const double* const values = details.first;
    std::size_t i = 0;
    for (; i + 8 <= details.count; i += 8) {
        if (eightZeros(values + i)) {
            counts[0] += 8;
            continue;
        }
        for (std::size_t k = 0; k < 8; ++k) {
            ++counts[(magnitudeBits(values[i + k]) >> kBucketShift) * kCounters +
                     k % kCounters];
        }
    }
    for (; i < details.count; ++i) {
        ++counts[(magnitudeBits(values[i]) >> kBucketShift) * kCounters];
    }
}

/// Appends the magnitudes other than 0 of one bucket; `to` has room for one more.
std::uint64_t* gatherBucket(const Coefficients& details, std::uint64_t bucket,
                            std::uint64_t* to) {
    for (std::size_t i = 0; i < details.count; ++i) {
        const std::uint64_t bits = magnitudeBits(details.first[i]);
        *to = bits;
        to += static_cast<std::size_t>((bits >> kBucketShift) == bucket && bits != 0);
    }
    return to;
}

/// The magnitude at `position`, from 0, of the details and `zeros` zeros, in ascending order.
double magnitudeAt(std::span<const Coefficients> details, std::uint64_t zeros,
                   std::uint64_t position) {
    std::vector<std::uint64_t> counts(kBuckets * kCounters);
    counts[0] = zeros;
    for (const Coefficients& run : details) {
        countBuckets(run, counts.data());
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
    const std::uint64_t kept = bucket == 0 ? inBucket - zeros : inBucket;
    const AlignedBlock block =
        acquireWorkingArray(kept + 1, "estimateNoise2D: Unable to malloc working array!\n");
    auto* const first = static_cast<std::uint64_t*>(block.data());
    std::uint64_t* last = first;
    for (const Coefficients& run : details) {
        last = gatherBucket(run, bucket, last);
    }
    // What the bucket holds beyond the gathered are zeros, which come first.
    const std::uint64_t inFront = inBucket - static_cast<std::uint64_t>(last - first);
    if (position - below < inFront) {
        return 0.0;
    }
    std::uint64_t* const wanted = first + (position - below - inFront);
    std::nth_element(first, wanted, last);
    double magnitude = 0.0;
    std::memcpy(&magnitude, wanted, sizeof magnitude);
    return magnitude;
}

double noiseAmong(std::span<const Coefficients> details, std::uint64_t zeros, long long count) {
    const long long position = count / 2 - 1;
    if (position < 0) {
        return 0.0;
    }
    return magnitudeAt(details, zeros, static_cast<std::uint64_t>(position)) * kNoiseFactor;
}

}  // namespace

int compareMagnitudes(const double* a, const double* b) {
    if (*a < *b) {
        return -1;
    }
    return *a == *b ? 0 : 1;
}

double estimateNoise2D(const RealImage& coefficients, int height, int width) {
    const long long count = detailCount(height, width);
    if (count <= 0) {
        return 0.0;
    }
    return noiseAmong(detailsOf(coefficients, height, width), /*zeros=*/0, count);
}

double noiseOfDetails(std::span<const Coefficients> details, int height, int width) {
    const long long count = detailCount(height, width);
    long long given = 0;
    for (const Coefficients& run : details) {
        given += static_cast<long long>(run.count);
    }
    return noiseAmong(details, static_cast<std::uint64_t>(count - given), count);
}

}  // namespace orv
