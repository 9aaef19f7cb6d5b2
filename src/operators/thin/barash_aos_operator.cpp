#include "operators/thin/barash_aos_operator.h"

#include <utility>

#include "base/rounding.h"
#include "images/discrete_image.h"
#include "schemes/aos_deblurring/aos_deblurring_operator.h"
#include "schemes/plane_operators/float_planes_operator.h"

namespace orv {

BarashAosOperator::BarashAosOperator(int iterations, int kernel, double tau, double lambda,
                                     double sigma, double edgeContrast, bool keepObserved)
    : iterations_(iterations),
      keepObserved_(keepObserved ? 1 : 0),
      kernel_(kernel),
      tau_(tau),
      lambda_(lambda),
      sigma_(sigma),
      edgeContrast_(edgeContrast) {}

std::unique_ptr<AosDeblurringOperator> BarashAosOperator::makeOperator(float lower,
                                                                       float upper) const {
    auto deblurring = std::make_unique<AosDeblurringOperator>(
        iterations_, kernel_, tau_, lambda_, sigma_, edgeContrast_, keepObserved_,
        /*updateEachStep=*/1);
    deblurring->setRange(lower, upper);
    return deblurring;
}

std::unique_ptr<DiscreteImage> BarashAosOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const auto deblurring =
        makeOperator(toFloat(source.minValue()), toFloat(source.maxValue()));
    const FloatImage plane(source);
    deblurring->setGuide(plane);
    const std::unique_ptr<FloatImage> result = deblurring->apply(plane, nullptr);
    target->setChannelFromFloat(*result, 0);
    return target;
}

std::unique_ptr<DiscreteImage> BarashAosOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> BarashAosOperator::runPlanes(const FloatImage3& planes,
                                                          std::unique_ptr<FloatImage3> target) {
    const auto deblurring = makeOperator(lower(), upper());
    return FloatPlanesOperator(deblurring.get()).apply(planes, std::move(target));
}

std::unique_ptr<FloatImage3> BarashAosOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    const auto deblurring = makeOperator(lower(), upper());
    return FloatPlanesOperator(deblurring.get()).applyToOwned(std::move(planes));
}

std::unique_ptr<FloatImage3> BarashAosOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> BarashAosOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> BarashAosOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage> BarashAosOperator::runPlane(const FloatImage& plane) {
    return makeOperator(lower(), upper())->apply(plane, nullptr);
}

}  // namespace orv
