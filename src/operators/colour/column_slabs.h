#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "images/real_image3.h"

namespace orv {

/// Takes packed pixels of three bytes through a buffer of doubles, a few whole columns at a
/// time, so that no plane of the picture's size has to be had.
///
/// Slabs follow one another as the columns of an x-major plane do, and all but the last hold a
/// multiple of 8 samples.
class ColumnSlabs {
  public:
    ColumnSlabs(int width, int height);

    /// The number of slabs.
    std::size_t count() const { return count_; }
    /// The first column of slab i.
    int firstColumn(std::size_t i) const;
    /// The columns of slab i.
    int columns(std::size_t i) const;
    /// The samples of slab i in each channel.
    std::size_t sampleCount(std::size_t i) const;

    /// Fills the buffer from slab i of packed pixels.
    void read(const unsigned char* pixels, std::size_t i);
    /// Writes the buffer to slab i of packed pixels, truncated.
    void write(unsigned char* pixels, std::size_t i) const;
    /// The buffer's three channels.
    std::array<double*, 3> samples();

  private:
    int width_;
    int height_;
    int slabColumns_;
    std::size_t count_;
    std::unique_ptr<RealImage3> buffer_;
};

}  // namespace orv
