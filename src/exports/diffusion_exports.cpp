#include <cmath>

#include "exports/call_frame.h"
#include "exports/keyword.h"
#include "operators/diffusion/fast_denoiser_operator.h"
#include "operators/diffusion/fast_restoration_operator.h"
#include "operators/diffusion/scheme_table.h"
#include "operators/thin/barash_aos_operator.h"
#include "orv/orv_constants.h"
#include "solvers/linear_solver_list.h"

namespace orv {

namespace {

/// The systems at the ends of a line read six of its samples.
constexpr int kShortestDeblurredLine = 6;

// What decides whether a diffusion can run at all.
struct Request {
    const DiscreteImage* image;
    const char* scheme;
    const char* flow;
    int solverId;
    double numbers[4];
    int gradientNormId;
    double tau;
    bool cflSubsteps;
};

bool solverCanWork(int solverId, int scheme) {
    const LinearSolverList list(/*capacity=*/50, /*groupCapacity=*/10);
    return solverId >= 0 && solverId < list.count() && solverFitsScheme(solverId, scheme);
}

bool canRun(const Request& request) {
    if (request.image == nullptr || request.scheme == nullptr || request.flow == nullptr) {
        return false;
    }
    for (const double number : request.numbers) {
        if (!std::isfinite(number)) {
            return false;
        }
    }
    const int scheme = schemeNumber(request.scheme);
    return request.gradientNormId >= 0 && request.gradientNormId < ORV_GRADIENT_NORM_COUNT &&
           schemeFitsSize(scheme, request.image->width(), request.image->height()) &&
           subStepsFit(scheme, request.tau, request.cflSubsteps) &&
           solverCanWork(request.solverId, scheme);
}

}  // namespace

}  // namespace orv

extern "C" {

void* ORVFastRestoration(void* image, const char* scheme, int solverId, int iterations,
                         double tau, int solverIterations, double sigma, double contrast,
                         const char* flow, int gradientNormId, int cflSubsteps) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        const bool subSteps = cflSubsteps != 0;
        if (!orv::canRun({source,
                          scheme,
                          flow,
                          solverId,
                          {tau, sigma, contrast, 0.0},
                          gradientNormId,
                          tau,
                          subSteps})) {
            return nullptr;
        }
        orv::FastRestorationOperator restoration(
            orv::schemeNumber(scheme), iterations, solverIterations, tau, sigma, contrast,
            solverId, subSteps, orv::restorationFlowNumber(flow), gradientNormId);
        return restoration.apply(*source, std::make_unique<orv::RgbDiscreteImage>(
                                              source->width(), source->height()));
    });
}

void* ORVFastDenoiser(void* image, const char* scheme, int solverId, int iterations, double tau,
                      int solverIterations, double sigma, double contrast, double fidelity,
                      const char* flow, int gradientNormId, int cflSubsteps) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        const int solver = solverId == 0 ? ORV_SOLVER_DENOISER_DEFAULT : solverId;
        if (!orv::canRun({source,
                          scheme,
                          flow,
                          solver,
                          {tau, sigma, contrast, fidelity},
                          gradientNormId,
                          tau,
                          /*cflSubsteps=*/true})) {
            return nullptr;
        }
        orv::FastDenoiserOperator denoiser(
            orv::schemeNumber(scheme), iterations, solverIterations, tau, sigma, contrast,
            fidelity, solver, cflSubsteps != 0, orv::denoiserFlowNumber(flow), gradientNormId);
        return denoiser.apply(*source, nullptr);
    });
}

void* ORVIFAosBarashOp(void* image, int iterations, int kernel, double tau, double lambda,
                       double sigma, double edgeContrast, bool keepObserved, bool colorPath) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (source == nullptr || source->width() < orv::kShortestDeblurredLine ||
            source->height() < orv::kShortestDeblurredLine) {
            return nullptr;
        }
        orv::BarashAosOperator deblurring(iterations, kernel, tau, lambda, sigma, edgeContrast,
                                          keepObserved);
        deblurring.setColorPath(colorPath ? 1 : 0);
        return deblurring.apply(*source, nullptr);
    });
}

}  // extern "C"
