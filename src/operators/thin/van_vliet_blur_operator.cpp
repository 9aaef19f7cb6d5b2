#include "operators/thin/van_vliet_blur_operator.h"

#include <algorithm>
#include <utility>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/blur_margin.h"
#include "filters/float_recursive_2d_blur_operator.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "images/discrete_image.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "schemes/plane_operators/progress_share.h"

namespace orv {

VanVlietBlurOperator::VanVlietBlurOperator(double sigma) : sigma_(sigma) {}

std::unique_ptr<DiscreteImage> VanVlietBlurOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    FloatRecursive2dBlurOperator blur(sigma_);
    FloatImage plane(source);
    blur.blurInPlace(plane);
    target->setChannelFromFloat(plane, 0);
    return target;
}

std::unique_ptr<DiscreteImage> VanVlietBlurOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    FloatRecursive2dBlurOperator blur(sigma_);
    return FloatPlanesOperator(&blur).apply(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    FloatRecursive2dBlurOperator blur(sigma_);
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        narrowToPlane(window, width, c);
        const WorkSlice slice(c, 3);
        blur.blurInPlace(planes->plane(c));
        reportWork(1, 1);
    }
    return planes;
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

void VanVlietBlurOperator::setSigma(double sigma) {
    sigma_ = sigma;
}

std::unique_ptr<FloatImage> VanVlietBlurOperator::runPlane(const FloatImage& plane) {
    return FloatRecursive2dBlurOperator(sigma_).apply(plane, nullptr);
}

void VanVlietBlurOperator::blurFinely(FloatImage& plane) const {
    RealRecursive2dBlurOperator blur(sigma_);
    const int margin = blurMargin(blur.sigma());
    const auto extended = withMirroredMargin(plane, margin);
    blur.blurInPlace(*extended);
    for (int x = 0; x < plane.width(); ++x) {
        const double* const column = extended->row(x + margin) + margin;
        std::transform(column, column + plane.height(), plane.row(x),
                       [](double sample) { return toFloat(sample); });
    }
}

void VanVlietBlurOperator::blurInFloats(FloatImage& plane) const {
    FloatRecursive2dBlurOperator(sigma_).blurInPlace(plane);
}

}  // namespace orv
