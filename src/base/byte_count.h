#pragma once

#include <cstddef>
#include <cstdint>

namespace orv {

/// a b, or PTRDIFF_MAX when that is more than memory can hold: asking for so much fails, where the
/// low bits of the product would give a block that is too small. A picture of some megabytes gets
/// there on a 32-bit system, when it is padded to a square.
constexpr std::size_t boundedProduct(std::size_t a, std::size_t b) {
    constexpr std::size_t kMost = PTRDIFF_MAX;
    return b != 0 && a > kMost / b ? kMost : a * b;
}

}  // namespace orv
