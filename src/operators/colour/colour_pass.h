#pragma once

#include <cstddef>
#include <functional>

namespace orv {

/// Three values sent to the host's callback in the course of a pass, each at the start of its
/// third.
///
///     value k = first + span k / 3, in integers, k = 0, 1, 2
struct ThirdsReport {
    int first;
    int span;
};

/// Walks the parts of a pass and keeps both accounts of the work on the way; `report` may be
/// null.
///
/// Fails:   false as soon as the observer of the work asked to stop.
bool forEachPart(std::size_t parts, const ThirdsReport* report,
                 const std::function<void(std::size_t)>& part);

/// Walks n samples in blocks: `block` gets the first sample and the count, a multiple of 8 but
/// for the last block.
///
/// Blocks are small enough for the samples of three planes to stay in the nearest cache.
void inBlocks(std::size_t n, const std::function<void(std::size_t, std::size_t)>& block);

/// Both: the blocks are the parts of the pass.
bool forEachBlock(std::size_t n, const ThirdsReport* report,
                  const std::function<void(std::size_t, std::size_t)>& block);

}  // namespace orv
