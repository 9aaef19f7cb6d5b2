#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/aligned_block.h"
#include "operators/kernels/susan_kernels.h"

namespace orv {

/// Line buffers and weight slots of one strip, which slide along with a pass.
template <class T>
class SusanBuffers {
  public:
    using Strip = SusanStrip<T>;

    SusanBuffers()
        : lines_(kLines * kLineSize * sizeof(T), kAlignment),
          slots_(kSlots * kSlotSize * sizeof(T), kAlignment) {
        // Pads outside the picture are computed with, though their results are dropped.
        std::fill_n(static_cast<T*>(lines_.data()), kLines * kLineSize, T{0});
    }

    /// Sample 0 of the buffer of a line.
    T* line(int i) {
        return static_cast<T*>(lines_.data()) +
               static_cast<std::size_t>(i) % kLines * kLineSize + Strip::kPad;
    }
    /// The weights of a line.
    T* slot(int i) {
        return static_cast<T*>(slots_.data()) +
               static_cast<std::size_t>(i) % kSlots * kSlotSize;
    }

  private:
    static constexpr std::size_t kLines = 8;
    static constexpr std::size_t kSlots = kSusanReach + 1;
    static constexpr std::size_t kLineSize = Strip::kStrip + 2 * Strip::kPad;
    static constexpr std::size_t kSlotSize = Strip::kSlot;
    static constexpr std::size_t kAlignment = 64;

    AlignedBlock lines_;
    AlignedBlock slots_;
};

/// The inside of a picture as the kernels walk it.
struct SusanInside {
    int lines;   ///< rows of bytes or columns of a plane
    int along;   ///< samples a line
    int stride;  ///< samples a pixel

    /// Samples at both ends of a line whose mask leaves the picture.
    int edge() const { return kSusanReach * stride; }
};

/// Runs the kernels over the inside of a picture, strip by strip and line by line.
///
/// `load(line, first, count, to)` copies samples; `weigh(lines, count, slot)` and
/// `write(line, first, count, lines, slots)` run the kernels; `write` gives false to stop.
template <class T, class Load, class Weigh, class Write>
void runSusanStrips(const SusanInside& inside, Load load, Weigh weigh, Write write) {
    using Strip = SusanStrip<T>;
    SusanBuffers<T> buffers;
    const int end = inside.along - inside.edge();
    for (int first = inside.edge(); first < end; first += Strip::kStrip) {
        const int count = std::min(Strip::kStrip, end - first);
        // What stands in a pad outside the picture plays no part.
        const int from = std::max(first - Strip::kPad, 0);
        const int to = std::min(first + count + Strip::kPad, inside.along);
        for (int i = 0; i < kSusanReach; ++i) {
            load(i, from, to - from, buffers.line(i) + (from - first));
        }
        for (int i = 0; i < inside.lines - kSusanReach; ++i) {
            const int last = i + kSusanReach;
            load(last, from, to - from, buffers.line(last) + (from - first));
            const std::array<const T*, 4> next = {buffers.line(i), buffers.line(i + 1),
                                                  buffers.line(i + 2), buffers.line(i + 3)};
            weigh(next.data(), count, buffers.slot(i));
            if (i < kSusanReach) {
                continue;
            }
            const std::array<const T*, 7> lines = {buffers.line(i - 3),
                                                   buffers.line(i - 2),
                                                   buffers.line(i - 1),
                                                   next[0],
                                                   next[1],
                                                   next[2],
                                                   next[3]};
            const std::array<const T*, 4> slots = {buffers.slot(i - 3), buffers.slot(i - 2),
                                                   buffers.slot(i - 1), buffers.slot(i)};
            if (!write(i, first, count, lines.data(), slots.data())) {
                return;
            }
        }
    }
}

}  // namespace orv
