#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orv {

class RealImage;

/// A coefficient and where it stands.
struct PlacedMagnitude {
    double magnitude;
    int x;
    int y;
};

/// The coefficients of a band other than 0, by falling magnitude, equal ones in storage order.
///
/// They come in buckets of neighbouring magnitudes. Only the buckets that are asked for are
/// gathered, and only those whose order is asked for are sorted.
///
/// Domain:  no coefficient that is no number. Coefficients that were handed out may be set to 0
///          in the band; nothing else of it may change.
/// Cost:    a pass over the band at the start and some later; 16 bytes a gathered coefficient.
class RemovalOrder {
  public:
    /// Owns:    nothing of the band, which must outlive this.
    RemovalOrder(const RealImage& band, double largest);

    /// Whether coefficients are left.
    bool hasNext();
    /// The coefficients of the present bucket that are left, in any order.
    std::span<const PlacedMagnitude> bucket() const {
        return {gathered_.data() + next_, bucketEnd_ - next_};
    }
    /// Hands out the largest that is left.
    PlacedMagnitude takeNext();
    /// Hands out the whole of bucket().
    void takeBucket() { next_ = bucketEnd_; }

  private:
    std::size_t bucketOf(double magnitude) const;
    void count();
    void gather();
    bool openBucket();

    const RealImage& band_;
    std::uint64_t low_;
    std::vector<std::uint32_t> counts_;
    std::vector<PlacedMagnitude> gathered_;
    std::vector<std::size_t> bucketEnds_;  ///< of the gathered buckets that were not opened yet
    std::size_t lowestGathered_;           ///< buckets from here on were gathered
    std::size_t next_ = 0;
    std::size_t bucketEnd_ = 0;
    bool sorted_ = false;
};

}  // namespace orv
