#pragma once

#include "methods/interleaved_planes.h"

namespace orv::cli {

/// Turns and mirrors samples as an EXIF orientation from 2 to 8 asks; any other leaves them.
void turnUpright(int orientation, InterleavedSamples& samples);

}  // namespace orv::cli
