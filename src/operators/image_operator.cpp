#include "operators/image_operator.h"

#include <utility>

#include "images/discrete_image.h"
#include "schemes/plane_operators/region_list.h"

namespace orv {

ImageOperator::ImageOperator()
    : bits_(8), reservedFlag_(0), reservedNumber_(0), regionKey_(255), regionCount_(0) {}

void ImageOperator::prepareRegion(const DiscreteImage& mask) {
    regionCount_ = collectRegion(mask, regionKey_, /*countSoFar=*/0, regionXs_, regionYs_);
}

void ImageOperator::releaseRegion() {
    regionXs_ = {};
    regionYs_ = {};
    regionCount_ = 0;
}

ImageOperator::~ImageOperator() = default;

int ImageOperator::bits() const {
    return bits_;
}

void ImageOperator::setBits(int n) {
    bits_ = n;
}

unsigned char ImageOperator::reservedFlag() const {
    return reservedFlag_;
}

void ImageOperator::setReservedFlag(unsigned char flag) {
    reservedFlag_ = flag;
}

int ImageOperator::reservedNumber() const {
    return reservedNumber_;
}

void ImageOperator::setReservedNumber(int n) {
    reservedNumber_ = n;
}

int ImageOperator::regionKey() const {
    return regionKey_;
}

void ImageOperator::setRegionKey(int key) {
    regionKey_ = key;
}

void ImageOperator::setRegion(int count, std::vector<int> xs, std::vector<int> ys) {
    regionCount_ = count;
    regionXs_ = std::move(xs);
    regionYs_ = std::move(ys);
}

std::unique_ptr<DiscreteImage> ImageOperator::applyWithTransform(
    const ColorSpaceTransform* /*transform*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return apply(source, std::move(target));
}

std::unique_ptr<DiscreteImage> ImageOperator::applyMaskedWithTransform(
    const ColorSpaceTransform* /*transform*/, const DiscreteImage& /*mask*/,
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    return apply(source, std::move(target));
}

std::unique_ptr<DiscreteImage> ImageOperator::applyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return apply(source, std::move(target));
}

void ImageOperator::hook() {}

}  // namespace orv
