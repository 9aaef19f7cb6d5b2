#include "schemes/flows/fidelity_diffusion_flow.h"

#include <gtest/gtest.h>

#include <memory>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

constexpr double kFidelity = 0.5;

TEST(FidelityDiffusionFlow, RightSidesBlendThePlaneWithTheInitialOne) {
    const FloatImage f = noisePlane(4, 3, 1);
    const FloatImage u = noisePlane(4, 3, 2);
    FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);
    flow.prepare(f);
    flow.setTimeStep(3.0f);
    const double r = kFidelity * 3.0;

    const auto whole = flow.imageToVector(u, nullptr);
    for (int y = 0; y < 3; ++y) {
        const auto row = flow.lineVectorX(u, y, nullptr);
        for (int x = 0; x < 4; ++x) {
            const auto column = flow.lineVectorY(u, x, nullptr);
            const double expected = (u.row(x)[y] + r * f.row(x)[y]) / (1.0 + r);
            EXPECT_FLOAT_EQ((*row)[x], static_cast<float>(expected));
            EXPECT_EQ((*column)[y], (*row)[x]);
            EXPECT_EQ((*whole)[x + 4 * y], (*row)[x]);
        }
    }
}

TEST(FidelityDiffusionFlow, StartsWithATimeStepOfZeroAndNoInitialPlane) {
    const FloatImage f = noisePlane(3, 3, 1);
    FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);

    EXPECT_EQ(flow.timeStep(), 0.0f);
    EXPECT_EQ(flow.initialPlane(), nullptr);
    flow.prepare(f);
    EXPECT_EQ(flow.initialPlane(), &f);
    const FloatImage u = noisePlane(3, 3, 2);
    EXPECT_EQ((*flow.lineVectorX(u, 1, nullptr))[1], u.row(1)[1]);
}

TEST(FidelityDiffusionFlow, MatricesTakeTheReducedStepOfTheirArgumentAndNotTheStoredOne) {
    const FloatImage plane = noisePlane(5, 4, 3);
    FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);
    DiffusionFlow plain(0.0, 20.0, 0, 0);
    flow.update(plane);
    plain.update(plane);
    flow.setTimeStep(100.0f);

    // 6 / (6 * 0.5 + 1) = 1.5
    const auto x = flow.lineMatrixX(6.0f, plane, 1, nullptr);
    const auto y = flow.lineMatrixY(6.0f, plane, 1, nullptr);
    const auto full = flow.fullMatrix(6.0f, plane, nullptr);

    EXPECT_EQ(flow.reducedStep(6.0f), 1.5f);
    EXPECT_EQ(x->Get(2, 1), plain.lineMatrixX(1.5f, plane, 1, nullptr)->Get(2, 1));
    EXPECT_EQ(y->Get(2, 1), plain.lineMatrixY(1.5f, plane, 1, nullptr)->Get(2, 1));
    EXPECT_EQ(full->Get(7, 6), plain.fullMatrix(1.5f, plane, nullptr)->Get(7, 6));
    EXPECT_NE(x->Get(2, 1), 0.0f);
}

TEST(FidelityDiffusionFlow, SemiImplicitStepSolvesTheEquationWithTheDataTerm) {
    const FloatImage u = noisePlane(6, 5, 4);
    const double tau = 2.0;
    FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);

    const auto result = makeScheme(Scheme::Semi, &flow, {.tau = tau})->apply(u, nullptr);

    // (1 + r) u_new - r f = u + tau A u_new, with f = u on the first step.
    const double r = kFidelity * tau;
    const DensePlane next(*result);
    const DenseMatrix A = denseOperator(DensePlane(*flow.diffusivityPlane()), true, true);
    const DensePlane moved = denseProduct(A, tau, next);
    for (int x = 0; x < 6; ++x) {
        for (int y = 0; y < 5; ++y) {
            const double left = (1.0 + r) * next.at(x, y) - r * u.row(x)[y];
            const double right = u.row(x)[y] + moved.at(x, y) - next.at(x, y);
            EXPECT_NEAR(left, right, 1e-3);
        }
    }
}

TEST(Quirk, AfiDataTerm) {
    const FloatImage u = noisePlane(6, 5, 5);
    for (const Scheme scheme : kAllSchemes) {
        SCOPED_TRACE(nameOf(scheme));
        FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);

        makeScheme(scheme, &flow, {.tau = 2.0})->apply(u, nullptr);

        const float told = flow.timeStep();
        const float expected = scheme == Scheme::Afi                             ? 0.0f
                               : scheme == Scheme::Aos                           ? 4.0f
                               : scheme == Scheme::Lod || scheme == Scheme::Semi ? 2.0f
                                                                                 : 1.0f;
        EXPECT_EQ(told, expected);
    }
    // The right sides of AFI are the plane alone, its matrices those of the reduced step.
    FidelityDiffusionFlow flow(0.0, 20.0, kFidelity, 0, 0);
    const auto result = makeScheme(Scheme::Afi, &flow, {.tau = 2.0})->apply(u, nullptr);
    const DensePlane g(*flow.diffusivityPlane());
    EXPECT_LT(largestDifference(*result, denseStep(Scheme::Afi, DensePlane(u), g, 1.0, true)),
              1e-3);
}

}  // namespace
}  // namespace orv::test
