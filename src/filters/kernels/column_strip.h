#pragma once

#include <cstddef>
#include <initializer_list>

#include "base/aligned_block.h"

namespace orv {

/// The transposed strip through which a pass along y works on a block of columns.
///
/// Owns:    its memory, for lines of `length` samples and `extra` rows more.
class ColumnStrip {
  public:
    /// As many lanes as the columns fill and as the second-level cache holds of the strip and of
    /// the columns themselves.
    ColumnStrip(int columns, int length, int extra, std::size_t sampleBytes)
        : lanes_(lanesFor(columns, length, sampleBytes)),
          block_(static_cast<std::size_t>(length + extra) * static_cast<std::size_t>(lanes_) *
                     sampleBytes,
                 /*alignment=*/64) {}

    /// 16, 32 or 64.
    int lanes() const { return lanes_; }
    /// Uninitialised samples.
    void* data() const { return block_.data(); }

  private:
    static int lanesFor(int columns, int length, std::size_t sampleBytes) {
        constexpr std::size_t kCacheBytes = std::size_t{5} << 18;
        const std::size_t bytesPerLane = 2 * static_cast<std::size_t>(length) * sampleBytes;
        for (const int lanes : {64, 32}) {
            if (columns >= lanes &&
                bytesPerLane * static_cast<std::size_t>(lanes) <= kCacheBytes) {
                return lanes;
            }
        }
        return 16;
    }

    int lanes_;
    AlignedBlock block_;
};

}  // namespace orv
