#pragma once

#include <vector>

namespace orv {

class DiscreteImage;

/// Fills xs and ys with the interior mask pixels that equal `key`; returns their count.
///
/// The scan runs x from 1 to width - 2 and inside it y from 1 to height - 2, so the one-pixel
/// border never belongs to a region and a mask narrower or lower than 3 gives none.
///
/// Shapes:  the lists get room for countSoFar + the hits; the hits stand at the front.
/// Domain:  countSoFar at least 0; it lengthens the lists and nothing else.
/// Cost:    two passes over the mask, two allocations.
int collectRegion(const DiscreteImage& mask, int key, int countSoFar, std::vector<int>& xs,
                  std::vector<int>& ys);

}  // namespace orv
