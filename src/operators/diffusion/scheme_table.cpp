#include "operators/diffusion/scheme_table.h"

#include <climits>
#include <cmath>

#include "base/rounding.h"
#include "schemes/flows/flow.h"
#include "schemes/full/full_2d_implicit_restoration.h"
#include "schemes/full/full_2d_semi_implicit_restoration.h"
#include "schemes/split/afi_2d_restoration.h"
#include "schemes/split/amos_2d_restoration.h"
#include "schemes/split/aos_2d_restoration.h"
#include "schemes/split/cfl_adi_2d_restoration.h"
#include "schemes/split/lod_2d_restoration.h"

namespace orv {

namespace {

constexpr int kIlu0BicgStab = 41;

bool hasSubSteps(int scheme) {
    return scheme == kSchemeAdi || scheme == kSchemeAmos || scheme == kScheme2DImplicit;
}

template <typename Scheme>
std::unique_ptr<SimpleAnisotropicOperator> make(const SchemeArguments& a, Flow& flow) {
    return std::make_unique<Scheme>(a.solverId, a.iterations, a.solverIterations, a.tau, &flow,
                                    /*reservedFlag=*/true, /*updateEachStep=*/true);
}

template <typename Scheme>
std::unique_ptr<SimpleAnisotropicOperator> makeWithSubSteps(const SchemeArguments& a,
                                                            Flow& flow) {
    return std::make_unique<Scheme>(a.solverId, a.iterations, a.solverIterations, a.tau, &flow,
                                    a.cflSubsteps, /*reservedFlag=*/true,
                                    /*updateEachStep=*/true);
}

}  // namespace

std::unique_ptr<SimpleAnisotropicOperator> makeScheme(const SchemeArguments& arguments,
                                                      Flow& flow) {
    switch (arguments.scheme) {
        case kSchemeLod:
            return make<Lod2DRestoration>(arguments, flow);
        case kSchemeAfi:
            return make<Afi2DRestoration>(arguments, flow);
        case kSchemeAdi:
            return makeWithSubSteps<CflAdi2DRestoration>(arguments, flow);
        case kSchemeAos:
            return make<Aos2DRestoration>(arguments, flow);
        case kSchemeAmos:
            return makeWithSubSteps<Amos2DRestoration>(arguments, flow);
        case kScheme2DSemi:
            return make<Full2DSemiImplicitRestoration>(arguments, flow);
        case kScheme2DImplicit:
            return makeWithSubSteps<Full2DImplicitRestoration>(arguments, flow);
        default:
            return nullptr;
    }
}

bool isUnsplitScheme(int scheme) {
    return scheme == kScheme2DSemi || scheme == kScheme2DImplicit;
}

bool schemeFitsSize(int scheme, int width, int height) {
    const int least = isUnsplitScheme(scheme) || hasSubSteps(scheme) ? 2 : 1;
    if (width < least || height < least) {
        return false;
    }
    return !isUnsplitScheme(scheme) || width <= INT_MAX / height;
}

bool solverFitsScheme(int solverId, int scheme) {
    return solverId != kIlu0BicgStab || isUnsplitScheme(scheme);
}

bool subStepsFit(int scheme, double tau, bool cflSubsteps) {
    if (!cflSubsteps || !hasSubSteps(scheme)) {
        return true;
    }
    const float half = toFloat(toFloat(tau) * 0.5);
    const double extra = std::trunc(half * -2.0);
    // Both the truncated product and one minus it are ints in the schemes.
    return extra > INT_MIN + 1.0 && extra <= INT_MAX;
}

}  // namespace orv
