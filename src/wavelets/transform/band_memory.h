#pragma once

#include <cstddef>

#include "base/aligned_block.h"
#include "wavelets/transform/wavelet_levels.h"

namespace orv {

/// Uninitialised memory of a band between two levels.
class BandMemory {
  public:
    /// No memory.
    BandMemory() = default;
    /// For the given positions along x and y.
    BandMemory(BandRange x, BandRange y)
        : x_(x),
          y_(y),
          stride_(strideOf(y)),
          block_(static_cast<std::size_t>(x.size()) * stride_ * sizeof(double), kAlignment) {}

    /// The band; its samples live as long as this.
    BandView view() const { return {static_cast<double*>(block_.data()), stride_, x_, y_}; }

  private:
    static constexpr std::size_t kAlignment = 64;
    // A gap between the columns keeps their like samples out of one set of the cache.
    static std::size_t strideOf(BandRange y) {
        return (static_cast<std::size_t>(y.size()) / 8 + 2) * 8;
    }

    BandRange x_ = {0, 0};
    BandRange y_ = {0, 0};
    std::size_t stride_ = 0;
    AlignedBlock block_;
};

}  // namespace orv
