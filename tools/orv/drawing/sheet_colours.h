#pragma once

#include "drawing/canvas.h"

namespace orv::cli {

// What sheets of pictures are drawn in: a light grey, which no photo is lost on.
inline constexpr Colour kGround{236, 236, 236};
inline constexpr Colour kInk{24, 24, 24};
inline constexpr Colour kSoftInk{84, 84, 84};

}  // namespace orv::cli
