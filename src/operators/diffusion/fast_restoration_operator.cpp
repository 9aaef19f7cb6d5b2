#include "operators/diffusion/fast_restoration_operator.h"

#include <utility>

#include "base/rounding.h"
#include "images/discrete_image.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"

namespace orv {

FastRestorationOperator::FastRestorationOperator(int scheme, int iterations,
                                                 int solverIterations, double tau, double sigma,
                                                 double contrast, int solverId,
                                                 bool cflSubsteps, int flow, int gradientNormId)
    : scheme_(scheme),
      iterations_(iterations),
      solverIterations_(solverIterations),
      tau_(tau),
      sigma_(sigma),
      contrast_(contrast),
      solverId_(solverId),
      tolerance_(0.0001f),
      cflSubsteps_(cflSubsteps),
      flow_(flow),
      gradientNormId_(gradientNormId) {}

template <class Work>
auto FastRestorationOperator::withScheme(float lower, float upper, Work work) const {
    DiffusionFlow flow(sigma_, contrast_, static_cast<int>(flowKindOf(flow_)), gradientNormId_);
    const std::unique_ptr<SimpleAnisotropicOperator> scheme = makeScheme(
        {scheme_, iterations_, solverIterations_, tau_, solverId_, cflSubsteps_}, flow);
    if (scheme == nullptr) {
        return decltype(work(*scheme)){};
    }
    scheme->setRange(lower, upper);
    return work(*scheme);
}

std::unique_ptr<DiscreteImage> FastRestorationOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const FloatImage plane(source);
    const std::unique_ptr<FloatImage> result = withScheme(
        toFloat(source.minValue()), toFloat(source.maxValue()),
        [&](SimpleAnisotropicOperator& scheme) { return scheme.apply(plane, nullptr); });
    if (result == nullptr) {
        return nullptr;
    }
    target->setChannelFromFloat(*result, 0);
    return target;
}

std::unique_ptr<DiscreteImage> FastRestorationOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> FastRestorationOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return withScheme(lower(), upper(), [&](SimpleAnisotropicOperator& scheme) {
        return FloatPlanesOperator(&scheme).apply(planes, std::move(target));
    });
}

std::unique_ptr<FloatImage3> FastRestorationOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    return withScheme(lower(), upper(), [&](SimpleAnisotropicOperator& scheme) {
        return FloatPlanesOperator(&scheme).applyToOwned(std::move(planes));
    });
}

std::unique_ptr<FloatImage3> FastRestorationOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FastRestorationOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FastRestorationOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage> FastRestorationOperator::runPlane(const FloatImage& plane) {
    return withScheme(lower(), upper(), [&](SimpleAnisotropicOperator& scheme) {
        return scheme.apply(plane, nullptr);
    });
}

}  // namespace orv
