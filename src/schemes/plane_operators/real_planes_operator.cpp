#include "schemes/plane_operators/real_planes_operator.h"

#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "images/real_image3.h"
#include "schemes/plane_operators/progress_share.h"
#include "schemes/plane_operators/real_operator.h"

namespace orv {

RealPlanesOperator::RealPlanesOperator(RealOperator* wrapped) : wrapped_(wrapped) {}

RealPlanesOperator::~RealPlanesOperator() = default;

std::unique_ptr<RealImage3> RealPlanesOperator::apply(const RealImage3& source,
                                                      std::unique_ptr<RealImage3> target) {
    if (!target) {
        target = source.clone();
    }
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        narrowToPlane(window, width, c);
        const WorkSlice slice(c, 3);

        wrapped_->setGuide(source.plane(c));
        target->setPlane(c, wrapped_->apply(source.plane(c), target->takePlane(c)));
        reportWork(1, 1);
    }
    return target;
}

std::unique_ptr<RealImage3> RealPlanesOperator::applyToOwned(
    std::unique_ptr<RealImage3> planes) {
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    std::unique_ptr<RealImage> spare;
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        narrowToPlane(window, width, c);
        const WorkSlice slice(c, 3);

        wrapped_->setGuide(planes->plane(c));
        std::unique_ptr<RealImage> result = wrapped_->apply(planes->plane(c), std::move(spare));
        spare = planes->takePlane(c);
        planes->setPlane(c, std::move(result));
        reportWork(1, 1);
    }
    return planes;
}

std::unique_ptr<RealImage3> RealPlanesOperator::applyMasked(
    const DiscreteImage& mask, const RealImage3& source, std::unique_ptr<RealImage3> target) {
    if (!target) {
        target = source.clone();
    }
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        const WorkSlice slice(c, 3);
        wrapped_->setGuide(source.plane(c));
        target->setPlane(c, wrapped_->applyMasked(mask, source.plane(c), target->takePlane(c)));
        reportWork(1, 1);
    }
    return target;
}

std::unique_ptr<RealImage3> RealPlanesOperator::iterate(int count, const RealImage3& source,
                                                        std::unique_ptr<RealImage3> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage3> work = source.clone();
    for (int pass = 0; pass < count && !workCancelled(); ++pass) {
        const WorkSlice slice(pass, count);
        target = apply(*work, std::move(target));
        work->assign(*target);
    }
    return target;
}

std::unique_ptr<RealImage3> RealPlanesOperator::iterateMasked(
    int count, const DiscreteImage& mask, const RealImage3& source,
    std::unique_ptr<RealImage3> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage3> work = source.clone();
    for (int pass = 0; pass < count && !workCancelled(); ++pass) {
        const WorkSlice slice(pass, count);
        target = applyMasked(mask, *work, std::move(target));
        work->assign(*target);
    }
    return target;
}

void RealPlanesOperator::printName(std::FILE* /*file*/) const {}

}  // namespace orv
