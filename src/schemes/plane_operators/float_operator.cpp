#include "schemes/plane_operators/float_operator.h"

#include <utility>

#include "images/float_image.h"
#include "schemes/plane_operators/region_list.h"

namespace orv {

FloatOperator::~FloatOperator() = default;

void FloatOperator::prepareRegion(const DiscreteImage& mask) {
    // The count that stands already goes into the length.
    // quirk: float-region-length
    regionCount_ = collectRegion(mask, regionKey_, regionCount_, regionXs_, regionYs_);
}

void FloatOperator::releaseRegion() {
    regionXs_ = std::vector<int>();
    regionYs_ = std::vector<int>();
    regionCount_ = 0;
}

void FloatOperator::setRange(float lower, float upper) {
    lower_ = lower;
    upper_ = upper;
}

int FloatOperator::regionKey() const {
    return regionKey_;
}

void FloatOperator::setRegionKey(int key) {
    regionKey_ = key;
}

void FloatOperator::setRegion(int count, std::vector<int> xs, std::vector<int> ys) {
    regionCount_ = count;
    regionXs_ = std::move(xs);
    regionYs_ = std::move(ys);
}

void FloatOperator::setGuide(const FloatImage& /*plane*/) {}

void FloatOperator::setReservedPlane(const FloatImage* /*plane*/) {}

void FloatOperator::reservedHook() {}

std::unique_ptr<FloatImage> FloatOperator::applyMasked(const DiscreteImage& /*mask*/,
                                                       const FloatImage& source,
                                                       std::unique_ptr<FloatImage> target) {
    return apply(source, std::move(target));
}

std::unique_ptr<FloatImage> FloatOperator::iterate(int count, const FloatImage& source,
                                                   std::unique_ptr<FloatImage> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage> work = source.clone();
    for (int pass = 0; pass < count; ++pass) {
        target = apply(*work, std::move(target));
        work->assign(*target);
    }
    return target;
}

std::unique_ptr<FloatImage> FloatOperator::iterateMasked(int count, const DiscreteImage& mask,
                                                         const FloatImage& source,
                                                         std::unique_ptr<FloatImage> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage> work = source.clone();
    for (int pass = 0; pass < count; ++pass) {
        target = applyMasked(mask, *work, std::move(target));
        work->assign(*target);
    }
    return target;
}

void FloatOperator::printName(std::FILE* /*file*/) const {}

}  // namespace orv
