#include "operators/diffusion/fast_denoiser_operator.h"

#include <utility>

#include "base/rounding.h"
#include "images/discrete_image.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"

namespace orv {

FastDenoiserOperator::FastDenoiserOperator(int scheme, int iterations, int solverIterations,
                                           double tau, double sigma, double contrast,
                                           double fidelity, int solverId, bool cflSubsteps,
                                           int flow, int gradientNormId)
    : scheme_(scheme),
      iterations_(iterations),
      solverIterations_(solverIterations),
      tau_(tau),
      sigma_(sigma),
      contrast_(contrast),
      fidelity_(fidelity),
      solverId_(solverId),
      tolerance_(0.0001f),
      cflSubsteps_(cflSubsteps),
      flow_(flow),
      gradientNormId_(gradientNormId) {}

std::unique_ptr<DiscreteImage> FastDenoiserOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage> result =
        diffuse(FloatImage(source), toFloat(source.minValue()), toFloat(source.maxValue()));
    if (result == nullptr) {
        return nullptr;
    }
    target->setChannelFromFloat(*result, 0);
    return target;
}

std::unique_ptr<DiscreteImage> FastDenoiserOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> FastDenoiserOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    FidelityDiffusionFlow flow(sigma_, contrast_, fidelity_,
                               static_cast<int>(flowKindOf(flow_)), gradientNormId_);
    // quirk: denoiser-substeps
    const std::unique_ptr<SimpleAnisotropicOperator> scheme = makeScheme(
        {scheme_, iterations_, solverIterations_, tau_, solverId_, /*cflSubsteps=*/true}, flow);
    if (scheme == nullptr) {
        return nullptr;
    }
    scheme->setRange(lower(), upper());
    return FloatPlanesOperator(scheme.get()).apply(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FastDenoiserOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    FidelityDiffusionFlow flow(sigma_, contrast_, fidelity_,
                               static_cast<int>(flowKindOf(flow_)), gradientNormId_);
    // quirk: denoiser-substeps
    const std::unique_ptr<SimpleAnisotropicOperator> scheme = makeScheme(
        {scheme_, iterations_, solverIterations_, tau_, solverId_, /*cflSubsteps=*/true}, flow);
    if (scheme == nullptr) {
        return nullptr;
    }
    scheme->setRange(lower(), upper());
    return FloatPlanesOperator(scheme.get()).applyToOwned(std::move(planes));
}

std::unique_ptr<FloatImage3> FastDenoiserOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FastDenoiserOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FastDenoiserOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage> FastDenoiserOperator::runPlane(const FloatImage& plane) {
    return diffuse(plane, lower(), upper());
}

std::unique_ptr<FloatImage> FastDenoiserOperator::diffuse(const FloatImage& plane, float lower,
                                                          float upper) const {
    FidelityDiffusionFlow flow(sigma_, contrast_, fidelity_,
                               static_cast<int>(flowKindOf(flow_)), gradientNormId_);
    // quirk: denoiser-substeps
    const std::unique_ptr<SimpleAnisotropicOperator> scheme = makeScheme(
        {scheme_, iterations_, solverIterations_, tau_, solverId_, /*cflSubsteps=*/true}, flow);
    if (scheme == nullptr) {
        return nullptr;
    }
    scheme->setRange(lower, upper);
    return scheme->apply(plane, nullptr);
}

}  // namespace orv
