#include "methods/colour_planes.h"

#include <limits>
#include <utility>

#include "methods/plane_run.h"

namespace orv {

std::unique_ptr<RealImage3> colourPlanes(Planes planes, float floor) {
    for (const auto& plane : planes) {
        plane->clamp(floor, std::numeric_limits<float>::max());
    }
    while (planes.size() < 3) {
        planes.push_back(planes[0]->clone());
    }
    return realImage3Of(std::move(planes));
}

}  // namespace orv
