#include "wavelets/shrinkage/removal_order.h"

#include <algorithm>
#include <cmath>

#include "images/real_image.h"
#include "wavelets/shrinkage/magnitude_bits.h"

namespace orv {

namespace {

// 64 buckets an octave; 32 octaves below the largest magnitude are told apart.
constexpr int kShift = 46;
constexpr std::size_t kBuckets = 2048;
constexpr std::uint64_t kSpan = std::uint64_t{kBuckets - 1} << kShift;

}  // namespace

RemovalOrder::RemovalOrder(const RealImage& band, double largest)
    : band_(band),
      low_(bitsOf(largest) > kSpan ? bitsOf(largest) - kSpan : 0),
      counts_(kBuckets),
      lowestGathered_(kBuckets) {
    count();
}

std::size_t RemovalOrder::bucketOf(double magnitude) const {
    const std::uint64_t bits = bitsOf(magnitude);
    return static_cast<std::size_t>((bits > low_ ? bits - low_ : 0) >> kShift);
}

void RemovalOrder::count() {
    const double* const values = band_.data();
    const std::size_t count = band_.sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        const double magnitude = std::fabs(values[i]);
        counts_[bucketOf(magnitude)] += magnitude != 0.0 ? 1U : 0U;
    }
}

// An eighth of the band at a time, so that what stays in the band is never gathered.
void RemovalOrder::gather() {
    const std::size_t wanted = band_.sampleCount() / 8 + 1;
    const std::size_t end = lowestGathered_;
    std::size_t total = 0;
    while (lowestGathered_ > 0 && total < wanted) {
        total += counts_[--lowestGathered_];
    }
    std::vector<std::size_t> places(end - lowestGathered_);
    bucketEnds_.clear();
    std::size_t place = total;
    for (std::size_t b = lowestGathered_; b < end; ++b) {
        bucketEnds_.push_back(place);
        place -= counts_[b];
        places[b - lowestGathered_] = place;
    }
    gathered_.resize(total);
    next_ = 0;
    bucketEnd_ = 0;
    for (int x = 0; x < band_.width(); ++x) {
        const double* const column = band_.row(x);
        for (int y = 0; y < band_.height(); ++y) {
            const double magnitude = std::fabs(column[y]);
            const std::size_t bucket = bucketOf(magnitude);
            if (bucket >= lowestGathered_ && bucket < end && magnitude != 0.0) {
                gathered_[places[bucket - lowestGathered_]++] = {magnitude, x, y};
            }
        }
    }
}

bool RemovalOrder::openBucket() {
    while (next_ == bucketEnd_ && !bucketEnds_.empty()) {
        bucketEnd_ = bucketEnds_.back();
        bucketEnds_.pop_back();
        sorted_ = false;
    }
    return next_ < bucketEnd_;
}

bool RemovalOrder::hasNext() {
    while (next_ == bucketEnd_ && !openBucket()) {
        if (lowestGathered_ == 0) {
            return false;
        }
        gather();
    }
    return true;
}

PlacedMagnitude RemovalOrder::takeNext() {
    if (!sorted_) {
        // Buckets are gathered in storage order, which a stable sort keeps among equals.
        std::stable_sort(gathered_.begin() + static_cast<std::ptrdiff_t>(next_),
                         gathered_.begin() + static_cast<std::ptrdiff_t>(bucketEnd_),
                         [](const PlacedMagnitude& a, const PlacedMagnitude& b) {
                             return a.magnitude > b.magnitude;
                         });
        sorted_ = true;
    }
    return gathered_[next_++];
}

}  // namespace orv
