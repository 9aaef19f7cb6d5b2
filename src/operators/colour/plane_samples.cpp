#include "operators/colour/plane_samples.h"

#include <utility>

#include "images/discrete_image.h"

namespace orv {

std::array<const double*, 3> samplesOf(const RealImage3& planes) {
    return {planes.plane(0).data(), planes.plane(1).data(), planes.plane(2).data()};
}

std::array<double*, 3> samplesOf(RealImage3& planes) {
    return {planes.plane(0).data(), planes.plane(1).data(), planes.plane(2).data()};
}

std::unique_ptr<RealImage3> emptyLike(const RealImage3& planes) {
    auto made = RealImage3::withoutPlanes(planes.width(), planes.height());
    for (int i = 0; i < 3; ++i) {
        made->setPlane(i, RealImage::uninitialised(planes.width(), planes.height()));
    }
    return made;
}

std::unique_ptr<RealImage3> targetLike(const RealImage3& planes,
                                       std::unique_ptr<RealImage3> target) {
    if (target != nullptr && target->width() == planes.width() &&
        target->height() == planes.height()) {
        return target;
    }
    auto made = emptyLike(planes);
    made->setFlag(planes.flag());
    for (int i = 0; i < 3; ++i) {
        made->plane(i).setFlag(planes.plane(i).flag());
    }
    return made;
}

std::unique_ptr<RealImage3> channelPlanes(const DiscreteImage& image) {
    if (image.channels() == 3 && image.packedRgb() != nullptr) {
        return std::make_unique<RealImage3>(image);
    }
    auto planes = RealImage3::withoutPlanes(image.width(), image.height());
    for (int c = 0; c < 3; ++c) {
        auto plane = RealImage::uninitialised(image.width(), image.height());
        for (int x = 0; x < image.width(); ++x) {
            double* const column = plane->row(x);
            for (int y = 0; y < image.height(); ++y) {
                column[y] = image.getChannel(c, x, y);
            }
        }
        planes->setPlane(c, std::move(plane));
    }
    return planes;
}

}  // namespace orv
