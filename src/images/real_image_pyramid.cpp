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
    : RealImagePyramid(source.clone(), levels, ratio, allocate) {}

RealImagePyramid::RealImagePyramid(std::unique_ptr<RealImage> base, int levels, double ratio,
                                   bool allocate)
    : width_(base->width()),
      height_(base->height()),
      ratio_(ratio),
      levels_(std::max(levels, 1)),
      planes_(static_cast<std::size_t>(levels_)) {
    planes_[0] = std::move(base);
    for (int i = 1; allocate && i < levels_; ++i) {
        setLevel(i, std::make_unique<RealImage>(widthAt(i), heightAt(i)));
    }
}

int RealImagePyramid::widthAt(int i) const {
    return shrink(width_, ratio_, i);
}

int RealImagePyramid::heightAt(int i) const {
    return shrink(height_, ratio_, i);
}

std::unique_ptr<RealImage> RealImagePyramid::takeLevel(int i) {
    return std::move(planes_[static_cast<std::size_t>(i)]);
}

void RealImagePyramid::setLevel(int i, std::unique_ptr<RealImage> plane) {
    planes_[static_cast<std::size_t>(i)] = std::move(plane);
}

}  // namespace orv
