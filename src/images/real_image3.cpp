#include "images/real_image3.h"

#include <utility>

#include "base/elementary.h"
#include "images/plane_reader.h"

namespace orv {

RealImage3::RealImage3(int width, int height)
    : width_(width > 0 ? width : 0),
      height_(height > 0 ? height : 0),
      pi_(4.0 * elementaryAtan(1.0)) {
    for (auto& plane : planes_) {
        plane = std::make_unique<RealImage>(width_, height_);
    }
}

RealImage3::RealImage3(const DiscreteImage& image)
    : width_(imageWidth(image)), height_(imageHeight(image)), pi_(4.0 * elementaryAtan(1.0)) {
    const int channels = imageChannels(image);
    const bool filled = channels == 1 || channels == 3;
    for (auto& plane : planes_) {
        plane = filled ? RealImage::uninitialised(width_, height_)
                       : std::make_unique<RealImage>(width_, height_);
    }
    if (channels == 1) {
        for (auto& plane : planes_) {
            readValue(image, *plane);
        }
    } else if (channels == 3) {
        readThreeChannels(image, *this);
    }
}

RealImage3::RealImage3(const RealImage3& other)
    : flag_(other.flag_), width_(other.width_), height_(other.height_), pi_(other.pi_) {
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        planes_[i] = other.planes_[i] ? other.planes_[i]->clone() : nullptr;
    }
}

RealImage3::RealImage3(WithoutPlanes /*key*/, int width, int height)
    : width_(width > 0 ? width : 0),
      height_(height > 0 ? height : 0),
      pi_(4.0 * elementaryAtan(1.0)) {}

std::unique_ptr<RealImage3> RealImage3::withoutPlanes(int width, int height) {
    return std::make_unique<RealImage3>(WithoutPlanes(), width, height);
}

std::unique_ptr<RealImage3> RealImage3::clone() const {
    return std::make_unique<RealImage3>(*this);
}

void RealImage3::assign(const RealImage3& other) {
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

std::unique_ptr<RealImage> RealImage3::takePlane(int i) {
    return std::move(planes_[static_cast<std::size_t>(i)]);
}

void RealImage3::setPlane(int i, std::unique_ptr<RealImage> plane) {
    planes_[static_cast<std::size_t>(i)] = std::move(plane);
}

void RealImage3::scaleAll(double value) {
    for (auto& plane : planes_) {
        plane->scale(value);
    }
}

void RealImage3::divideAll(double value) {
    for (auto& plane : planes_) {
        plane->divide(value);
    }
}

void RealImage3::addAll(double value) {
    for (auto& plane : planes_) {
        plane->add(value);
    }
}

}  // namespace orv
