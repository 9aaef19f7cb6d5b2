#include "schemes/split/splitted_2d_restoration.h"

#include <gtest/gtest.h>

#include <memory>

#include "algebra/real_vector.h"
#include "schemes/flows/diffusion_flow.h"
#include "solvers/linear_solver.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

/// Shows what the base holds.
class Probe final : public Splitted2DRestoration {
  public:
    using Splitted2DRestoration::Splitted2DRestoration;

    std::unique_ptr<FloatImage> step(const FloatImage& /*source*/,
                                     std::unique_ptr<FloatImage> target) override {
        sizes = {rhsX_->size(), solutionX_->size(), rhsY_->size(), solutionY_->size()};
        sumOfSquares = rhsX_->SumOfSquares() + solutionX_->SumOfSquares() +
                       rhsY_->SumOfSquares() + solutionY_->SumOfSquares();
        return target;
    }
    const LinearSolver* solverX() const { return solverX_.get(); }
    const LinearSolver* solverY() const { return solverY_.get(); }
    int solverId() const { return solverId_; }

    std::vector<int> sizes;
    double sumOfSquares = -1.0;
};

TEST(Splitted2DRestoration, MakesZeroLineVectorsOfTheSizeOfThePlane) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    Probe probe(0, 1, 50, 1.0, &flow, true, true);

    probe.apply(noisePlane(5, 3, 1), nullptr);

    EXPECT_EQ(probe.sizes, (std::vector<int>{5, 5, 3, 3}));
    EXPECT_EQ(probe.sumOfSquares, 0.0);
}

TEST(Splitted2DRestoration, StepThatLeavesItsTargetAloneFindsTheSourceThere) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const FloatImage plane = noisePlane(5, 3, 1);
    for (const int iterations : {1, 2}) {
        Probe probe(0, iterations, 50, 1.0, &flow, true, true);

        const auto result = probe.apply(plane, std::make_unique<FloatImage>(5, 3, 77.0f));

        EXPECT_TRUE(sameBits(*result, plane));
    }
}

TEST(LineSchemes, WriteEverySampleOfTheTargetThatTheyAreGiven) {
    const FloatImage plane = noisePlane(37, 21, 2);
    for (const Scheme scheme : kLineSchemes) {
        for (const int solverId : {0, 2}) {
            DiffusionFlow flow(0.0, 25.0, 0, 0);
            DiffusionFlow freshFlow(0.0, 25.0, 0, 0);
            const SchemeArguments arguments{.tau = 2.5, .solverId = solverId};

            const auto given = makeScheme(scheme, &flow, arguments)
                                   ->apply(plane, std::make_unique<FloatImage>(37, 21, 1e6f));

            const auto fresh = makeScheme(scheme, &freshFlow, arguments)->apply(plane, nullptr);
            EXPECT_TRUE(sameBits(*given, *fresh)) << nameOf(scheme) << solverId;
        }
    }
}

TEST(Splitted2DRestoration, PrintsItsClassText) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    EXPECT_EQ(printedName(Probe(0, 1, 50, 1.0, &flow, true, true)),
              "Splitted 2D restoration\n");
}

TEST(Splitted2DRestoration, SettingTheStoredSolverChangesNothing) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    Probe probe(2, 1, 50, 1.0, &flow, true, true);
    const LinearSolver* const x = probe.solverX();
    const LinearSolver* const y = probe.solverY();

    probe.setSolverX(2);
    probe.setSolverY(2);

    EXPECT_NE(x, nullptr);
    EXPECT_NE(x, y);
    EXPECT_EQ(probe.solverX(), x);
    EXPECT_EQ(probe.solverY(), y);
}

TEST(Quirk, SetSolverKeepsId) {
    const FloatImage plane = noisePlane(6, 5, 2);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    Lod2DRestoration asked(1, 1, 50, 1.0, &flow, true, true);
    asked.setSolverX(0);
    asked.setSolverY(0);
    Full2DSemiImplicitRestoration askedFull(1, 1, 50, 1.0, &flow, true, true);
    askedFull.setSolver(0);

    const auto lines = asked.apply(plane, nullptr);
    const auto full = askedFull.apply(plane, nullptr);

    // Solver 1 is a plain product and far from the solution that solver 0 gives.
    const SchemeArguments stored{.solverId = 1};
    EXPECT_TRUE(
        sameBits(*lines, *makeScheme(Scheme::Lod, &flow, stored)->apply(plane, nullptr)));
    EXPECT_TRUE(
        sameBits(*full, *makeScheme(Scheme::Semi, &flow, stored)->apply(plane, nullptr)));
    EXPECT_FALSE(sameBits(*lines, *makeScheme(Scheme::Lod, &flow)->apply(plane, nullptr)));
    EXPECT_FALSE(sameBits(*full, *makeScheme(Scheme::Semi, &flow)->apply(plane, nullptr)));
}

TEST(Splitted2DRestoration, SettingAnotherSolverMakesANewOneEachTime) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    Probe probe(2, 1, 50, 1.0, &flow, true, true);

    probe.setSolverX(0);

    EXPECT_NE(probe.solverX(), nullptr);
    EXPECT_EQ(probe.solverId(), 2);
}

TEST(Splitted2DRestoration, AnUnknownSolverIdGivesNoSolver) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const Probe probe(42, 1, 50, 1.0, &flow, true, true);

    EXPECT_EQ(probe.solverX(), nullptr);
    EXPECT_EQ(probe.solverY(), nullptr);
}

}  // namespace
}  // namespace orv::test
