#include "schemes/plane_operators/float_planes_operator.h"

#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/float_image.h"
#include "images/float_image3.h"
#include "schemes/plane_operators/float_operator.h"
#include "schemes/plane_operators/progress_share.h"

namespace orv {

namespace {

// A run that was cancelled leaves places empty: they get what a cloned target would hold.
void fillPlaces(const FloatImage3& source, FloatImage3& target) {
    for (int c = 0; c < 3; ++c) {
        std::unique_ptr<FloatImage> plane = target.takePlane(c);
        target.setPlane(c, plane ? std::move(plane) : source.plane(c).clone());
    }
}

}  // namespace

FloatPlanesOperator::FloatPlanesOperator(FloatOperator* wrapped) : wrapped_(wrapped) {}

FloatPlanesOperator::~FloatPlanesOperator() = default;

std::unique_ptr<FloatImage3> FloatPlanesOperator::apply(const FloatImage3& source,
                                                        std::unique_ptr<FloatImage3> target) {
    if (!target) {
        target = wrapped_->dropsTarget()
                     ? FloatImage3::withoutPlanes(source.width(), source.height())
                     : source.clone();
        target->setFlag(source.flag());
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
    fillPlaces(source, *target);
    return target;
}

std::unique_ptr<FloatImage3> FloatPlanesOperator::applyToOwned(
    std::unique_ptr<FloatImage3> planes) {
    if (!wrapped_->dropsTarget()) {
        return apply(*planes, nullptr);
    }
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    std::unique_ptr<FloatImage> spare;
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        narrowToPlane(window, width, c);
        const WorkSlice slice(c, 3);

        wrapped_->setGuide(planes->plane(c));
        std::unique_ptr<FloatImage> result =
            wrapped_->apply(planes->plane(c), std::move(spare));
        spare = planes->takePlane(c);
        planes->setPlane(c, std::move(result));
        reportWork(1, 1);
    }
    return planes;
}

std::unique_ptr<FloatImage3> FloatPlanesOperator::applyMasked(
    const DiscreteImage& mask, const FloatImage3& source, std::unique_ptr<FloatImage3> target) {
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

std::unique_ptr<FloatImage3> FloatPlanesOperator::iterate(int count, const FloatImage3& source,
                                                          std::unique_ptr<FloatImage3> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage3> work = source.clone();
    for (int pass = 0; pass < count && !workCancelled(); ++pass) {
        const WorkSlice slice(pass, count);
        target = apply(*work, std::move(target));
        work->assign(*target);
    }
    return target;
}

std::unique_ptr<FloatImage3> FloatPlanesOperator::iterateMasked(
    int count, const DiscreteImage& mask, const FloatImage3& source,
    std::unique_ptr<FloatImage3> target) {
    if (!target) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage3> work = source.clone();
    for (int pass = 0; pass < count && !workCancelled(); ++pass) {
        const WorkSlice slice(pass, count);
        target = applyMasked(mask, *work, std::move(target));
        work->assign(*target);
    }
    return target;
}

void FloatPlanesOperator::printName(std::FILE* /*file*/) const {}

}  // namespace orv
