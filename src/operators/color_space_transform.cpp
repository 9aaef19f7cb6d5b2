#include "operators/color_space_transform.h"

namespace orv {

ColorSpaceTransform::~ColorSpaceTransform() = default;

void ColorSpaceTransform::hook() {}

}  // namespace orv
