#include "images/float_image3.h"

#include <utility>

#include "base/elementary.h"
#include "images/plane_reader.h"

namespace orv {

FloatImage3::FloatImage3(int width, int height)
    : width_(width > 0 ? width : 0),
      height_(height > 0 ? height : 0),
      pi_(static_cast<float>(4.0 * elementaryAtan(1.0))) {
    for (auto& plane : planes_) {
        plane = std::make_unique<FloatImage>(width_, height_);
    }
}

FloatImage3::FloatImage3(const DiscreteImage& image)
    : width_(imageWidth(image)),
      height_(imageHeight(image)),
      pi_(static_cast<float>(4.0 * elementaryAtan(1.0))) {
    const int channels = imageChannels(image);
    const bool filled = channels == 1 || channels == 3;
    for (auto& plane : planes_) {
        plane = filled ? FloatImage::uninitialised(width_, height_)
                       : std::make_unique<FloatImage>(width_, height_);
    }
    if (channels == 1) {
        for (auto& plane : planes_) {
            readValue(image, *plane);
        }
    } else if (channels == 3) {
        readThreeChannels(image, *this);
    }
}

FloatImage3::FloatImage3(const FloatImage3& other)
    : flag_(other.flag_), width_(other.width_), height_(other.height_), pi_(other.pi_) {
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        planes_[i] = other.planes_[i] ? other.planes_[i]->clone() : nullptr;
    }
}

FloatImage3::FloatImage3(WithoutPlanes /*key*/, int width, int height)
    : width_(width > 0 ? width : 0),
      height_(height > 0 ? height : 0),
      pi_(static_cast<float>(4.0 * elementaryAtan(1.0))) {}

std::unique_ptr<FloatImage3> FloatImage3::withoutPlanes(int width, int height) {
    return std::make_unique<FloatImage3>(WithoutPlanes(), width, height);
}

std::unique_ptr<FloatImage3> FloatImage3::clone() const {
    return std::make_unique<FloatImage3>(*this);
}

void FloatImage3::assign(const FloatImage3& other) {
    if (other.width_ == width_ && other.height_ == height_) {
        for (std::size_t i = 0; i < planes_.size(); ++i) {
            if (planes_[i] && other.planes_[i]) {
                planes_[i]->assign(*other.planes_[i]);
            }
        }
        return;
    }
    width_ = other.width_;
    height_ = other.height_;
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        planes_[i] = other.planes_[i] ? other.planes_[i]->clone() : nullptr;
    }
}

std::unique_ptr<FloatImage> FloatImage3::takePlane(int i) {
    return std::move(planes_[static_cast<std::size_t>(i)]);
}

void FloatImage3::setPlane(int i, std::unique_ptr<FloatImage> plane) {
    planes_[static_cast<std::size_t>(i)] = std::move(plane);
}

}  // namespace orv
