#include "images/real_image_pyramid.h"

#include <algorithm>
#include <utility>

#include "base/rounding.h"

namespace orv {

namespace {

int shrink(int size, double ratio, int times) {
    for (int i = 0; i < times; ++i) {
        size = toInt(size * ratio);
    }
    return size;
}

}  // namespace

RealImagePyramid::RealImagePyramid(const RealImage& source, int levels, double ratio,
                                   bool allocate)
    : width_(source.width()),
      height_(source.height()),
      ratio_(ratio),
      levels_(std::max(levels, 1)),
      planes_(static_cast<std::size_t>(levels_)) {
    planes_[0] = source.clone();
    for (int i = 1; allocate && i < levels_; ++i) {
        setLevel(i, std::make_unique<RealImage>(levelWidth(i), levelHeight(i)));
    }
}

int RealImagePyramid::levelWidth(int i) const {
    return shrink(width_, ratio_, i);
}

int RealImagePyramid::levelHeight(int i) const {
    return shrink(height_, ratio_, i);
}

std::unique_ptr<RealImage> RealImagePyramid::takeLevel(int i) {
    return std::move(planes_[static_cast<std::size_t>(i)]);
}

void RealImagePyramid::setLevel(int i, std::unique_ptr<RealImage> plane) {
    planes_[static_cast<std::size_t>(i)] = std::move(plane);
}

}  // namespace orv
