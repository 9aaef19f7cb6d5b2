#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "images/float_image3.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

/// A float solution of at most 63 unknowns on grey levels.
constexpr double kGreyLevels = 1e-3;

TEST(Full2DSchemes, AgreeWithADenseSolutionOfTheSameStep) {
    for (const auto& [w, h] : {std::pair{2, 2}, std::pair{2, 5}, std::pair{3, 3},
                               std::pair{7, 4}, std::pair{5, 9}}) {
        const FloatImage plane = noisePlane(w, h, 1);
        for (const Scheme scheme : {Scheme::Semi, Scheme::Implicit}) {
            for (const double tau : {0.25, 1.0, 3.0}) {
                SCOPED_TRACE(std::string(nameOf(scheme)) + " " + std::to_string(w) + "x" +
                             std::to_string(h) + " " + std::to_string(tau));
                DiffusionFlow flow(0.7, 25.0, 0, 0);

                const auto result =
                    makeScheme(scheme, &flow, {.tau = tau})->apply(plane, nullptr);

                const DensePlane g(*flow.diffusivityPlane());
                EXPECT_LT(largestDifference(*result,
                                            denseStep(scheme, DensePlane(plane), g, tau, true)),
                          kGreyLevels);
            }
        }
    }
}

TEST(Full2DSemiImplicitRestoration, EnoughGaussSeidelSweepsReachTheDirectSolution) {
    const FloatImage plane = noisePlane(9, 8, 2);
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    const auto direct = makeScheme(Scheme::Semi, &flow)->apply(plane, nullptr);
    const auto iterated =
        makeScheme(Scheme::Semi, &flow, {.solverId = 2, .solverIterations = 300})
            ->apply(plane, nullptr);

    EXPECT_LT(largestDifference(*iterated, DensePlane(*direct)), kGreyLevels);
}

TEST(Quirk, ImplicitCopyDirection) {
    const FloatImage plane = noisePlane(6, 5, 3);
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    const auto result =
        makeScheme(Scheme::Implicit, &flow, {.tau = 3.0})->apply(plane, nullptr);

    // half = 1.5 and k = 4: one product with I + 0.375 A, where four would be the half step.
    const DensePlane u(plane);
    const DenseMatrix A = denseOperator(DensePlane(*flow.diffusivityPlane()), true, true);
    DensePlane all = u;
    for (int i = 0; i < 4; ++i) {
        all = denseProduct(A, 0.375, all);
    }
    EXPECT_LT(largestDifference(*result, denseSolution(A, 1.5, denseProduct(A, 0.375, u))),
              kGreyLevels);
    EXPECT_GT(largestDifference(*result, denseSolution(A, 1.5, all)), 1.0);
}

TEST(Quirk, ImplicitNoReset) {
    const FloatImage3 planes = noisePlanes(6, 5, 4);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto scheme = makeScheme(Scheme::Implicit, &flow, {.tau = 0.5});

    const auto results = FloatPlanesOperator(scheme.get()).apply(planes, nullptr);

    DiffusionFlow plain(0.0, 25.0, 0, 0);
    const auto operatorOf = [&](int c) {
        const auto g = plain.computeDiffusivity(planes.plane(c), nullptr);
        return denseOperator(DensePlane(*g), true, true);
    };
    const DenseMatrix first = operatorOf(0);
    for (int c = 0; c < 3; ++c) {
        SCOPED_TRACE(c);
        const DenseMatrix own = operatorOf(c);
        const DensePlane rhs = denseProduct(own, 0.25, DensePlane(planes.plane(c)));
        EXPECT_LT(largestDifference(results->plane(c), denseSolution(first, 0.25, rhs)),
                  kGreyLevels);
        if (c > 0) {
            EXPECT_GT(largestDifference(results->plane(c), denseSolution(own, 0.25, rhs)), 1.0);
        }
    }
}

TEST(Full2DSemiImplicitRestoration, FactorisesEveryPlaneAnew) {
    const FloatImage3 planes = noisePlanes(6, 5, 5);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto scheme = makeScheme(Scheme::Semi, &flow);

    const auto results = FloatPlanesOperator(scheme.get()).apply(planes, nullptr);

    for (int c = 0; c < 3; ++c) {
        DiffusionFlow own(0.0, 25.0, 0, 0);
        const auto alone = makeScheme(Scheme::Semi, &own)->apply(planes.plane(c), nullptr);
        EXPECT_TRUE(sameBits(results->plane(c), *alone)) << c;
    }
}

TEST(Full2DImplicitRestoration, SecondStepStartsTheSolverFromTheFirstSolution) {
    const FloatImage plane = noisePlane(6, 5, 6);
    const auto run = [&](int iterations) {
        DiffusionFlow flow(0.0, 25.0, 0, 0);
        // Solver 2 makes one sweep, so that a better start shows as a better result.
        return makeScheme(
                   Scheme::Implicit, &flow,
                   {.tau = 2.0, .solverId = 2, .iterations = iterations, .solverIterations = 1})
            ->apply(plane, nullptr);
    };
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto exact = makeScheme(Scheme::Implicit, &flow, {.tau = 2.0})->apply(plane, nullptr);

    const double once = largestDifference(*run(1), DensePlane(*exact));
    const double often = largestDifference(*run(20), DensePlane(*exact));

    EXPECT_GT(once, 1.0);
    EXPECT_LT(often, 1e-2);
}

/// Opens the abstract base.
class Probe final : public Full2DRestoration {
  public:
    using Full2DRestoration::Full2DRestoration;
    std::unique_ptr<FloatImage> step(const FloatImage& /*source*/,
                                     std::unique_ptr<FloatImage> target) override {
        return target;
    }
};

TEST(Full2DRestoration, PrintsItsClassText) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    EXPECT_EQ(printedName(Probe(0, 1, 50, 1.0, &flow, true, true)), "Full 2D restoration\n");
}

TEST(Full2DRestoration, AssigningPlanesDoesNothing) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    Probe probe(0, 1, 50, 1.0, &flow, true, true);
    const FloatImage source(2, 2, 1.0f);
    FloatImage target(2, 2, 7.0f);

    probe.assignPlane(source, target);

    EXPECT_EQ(target.row(1)[1], 7.0f);
}

}  // namespace
}  // namespace orv::test
