#include "schemes/plane_operators/real_operator.h"

#include <utility>

#include "images/real_image.h"
#include "schemes/plane_operators/region_list.h"

namespace orv {

RealOperator::~RealOperator() = default;

void RealOperator::prepareRegion(const DiscreteImage& mask) {
    regionCount_ = collectRegion(mask, regionKey_, /*countSoFar=*/0, regionXs_, regionYs_);
}

void RealOperator::prepareRegion2(const DiscreteImage& mask) {
    regionCount2_ = collectRegion(mask, regionKey2_, /*countSoFar=*/0, regionXs2_, regionYs2_);
}

void RealOperator::releaseRegion() {
    regionXs_ = std::vector<int>();
    regionYs_ = std::vector<int>();
    regionCount_ = 0;
}

void RealOperator::releaseRegion2() {
    regionXs2_ = std::vector<int>();
    regionYs2_ = std::vector<int>();
    regionCount2_ = 0;
}

void RealOperator::setRange(double lower, double upper) {
    lower_ = lower;
    upper_ = upper;
}

const RealImage* RealOperator::auxiliaryPlane() const {
    return auxiliaryPlane_;
}

void RealOperator::setAuxiliaryPlane(const RealImage* plane) {
    auxiliaryPlane_ = plane;
}

int RealOperator::regionKey() const {
    return regionKey_;
}

void RealOperator::setRegionKey(int key) {
    regionKey_ = key;
}

int RealOperator::regionKey2() const {
    return regionKey2_;
}

void RealOperator::setRegionKey2(int key) {
    regionKey2_ = key;
}

void RealOperator::setRegion(int count, std::vector<int> xs, std::vector<int> ys) {
    regionCount_ = count;
    regionXs_ = std::move(xs);
    regionYs_ = std::move(ys);
}

void RealOperator::setRegion2(int count, std::vector<int> xs, std::vector<int> ys) {
    regionCount2_ = count;
    regionXs2_ = std::move(xs);
    regionYs2_ = std::move(ys);
}

void RealOperator::setGuide(const RealImage& /*plane*/) {}

void RealOperator::setReservedPlane(const RealImage* /*plane*/) {}

void RealOperator::reservedHook() {}

std::unique_ptr<RealImage> RealOperator::applyMasked(const DiscreteImage& /*mask*/,
                                                     const RealImage& source,
                                                     std::unique_ptr<RealImage> target) {
    return apply(source, std::move(target));
}

std::unique_ptr<RealImage> RealOperator::iterate(int count, const RealImage& source,
                                                 std::unique_ptr<RealImage> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage> work = source.clone();
    for (int pass = 0; pass < count; ++pass) {
        target = apply(*work, std::move(target));
        work->assign(*target);
    }
    return target;
}

std::unique_ptr<RealImage> RealOperator::iterateMasked(int count, const DiscreteImage& mask,
                                                       const RealImage& source,
                                                       std::unique_ptr<RealImage> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage> work = source.clone();
    for (int pass = 0; pass < count; ++pass) {
        target = applyMasked(mask, *work, std::move(target));
        work->assign(*target);
    }
    return target;
}

void RealOperator::printName(std::FILE* /*file*/) const {}

}  // namespace orv
