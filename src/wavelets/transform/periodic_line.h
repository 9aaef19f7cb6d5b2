#pragma once

#include "wavelets/transform/band_range.h"

namespace orv {

/// i / n rounded down, for n above 0.
constexpr int floorQuotient(int i, int n) {
    const int quotient = i / n;
    return i % n < 0 ? quotient - 1 : quotient;
}

/// The position from range.begin to range.begin + n - 1 that a periodic line of n samples has at
/// i: it is kept if it lies below range.end.
constexpr int keptPosition(int i, BandRange range, int n) {
    const int distance = i - range.begin;
    return i - n * floorQuotient(distance, n);
}

}  // namespace orv
