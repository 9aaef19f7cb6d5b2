#pragma once

#include <cstddef>

#include "base/aligned_block.h"

namespace orv {

/// Memory for `count` doubles, which hold anything.
///
/// Fails:   memory that can't be had writes `message` to the standard error stream and ends the
///          process with status 1, as all of the wavelet code does.
AlignedBlock acquireWorkingArray(std::size_t count, const char* message);

/// The doubles of a block.
inline double* doublesOf(const AlignedBlock& block) {
    return static_cast<double*>(block.data());
}

}  // namespace orv
