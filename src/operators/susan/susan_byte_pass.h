#pragma once

#include "operators/susan/susan_mask.h"
#include "operators/susan/susan_progress.h"

namespace orv {

/// Two packed pictures of bytes of one size: what a pass reads and what it writes.
struct SusanBytes {
    const unsigned char* from;
    unsigned char* to;
    int width;
    int height;
    int channels;  ///< bytes a pixel, 1 or 3
};

/// One SUSAN pass over bytes, every channel by itself.
///
/// The result is that of `susanValue` in double precision, truncated, byte for byte; the
/// similarities come from a table of the 256 possible differences. Most samples are done in
/// single precision, lanes side by side, those whose truncation it can't decide once more.
///
/// Fails:   never; ends early when the work is cancelled.
/// Cost:    one pass with seven lines of floats; far from a border about 25 times as fast as
///          sample by sample.
void susanBytePass(const SusanMask& mask, double inverse, const SusanBytes& picture,
                   SusanProgress& progress);

}  // namespace orv
