#include "solvers/gmres/combined_krylov_solver.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "base/rounding.h"
#include "solvers/gmres/gmres_solver.h"
#include "solvers/gmres/mgcr_solver.h"
#include "solvers/gradient/cbb_solver.h"
#include "solvers/stationary/gauss_seidel_solver.h"
#include "solvers/stationary/thomas_solver.h"
#include "support/direct_solution.h"
#include "support/krylov_systems.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::allNan;
using test::denseSolve;
using test::diffusionLine;
using test::directSolution;
using test::dominantMatrix;
using test::KrylovSystem;
using test::krylovSystems;
using test::largestError;
using test::residualNorm;
using test::sameBitsOrNan;
using test::sameVectorBits;
using test::scaledIdentity;
using test::start;
using test::times;
using test::vectorOf;
using test::wavyVector;

std::unique_ptr<LinearSolver> cbb() {
    return std::make_unique<CbbSolver>(5, 0.0001);
}

enum class Inner { Gmres, Mgcr };

/// The inner solvers of the two GMRESR forms, with the restart length that they are given.
std::unique_ptr<LinearSolver> inner(Inner kind, int maxIter) {
    if (kind == Inner::Gmres) {
        return std::make_unique<GmresSolver>(maxIter, 0, 0.0001, false);
    }
    return std::make_unique<MgcrSolver>(maxIter, 0, 0.0001);
}

/// The method written down once more, with all its memory from the start and no early end.
struct PlainCombined {
    int maxIter;
    std::size_t l;
    std::unique_ptr<LinearSolver> inner;
    double tol;
    bool converged = false;

    void solve(const Matrix& A, const RealVector& b, RealVector& u) {
        std::vector<RealVector> search(l, RealVector(A.Rows()));
        std::vector<RealVector> image(l, RealVector(A.Rows()));
        converged = false;
        RealVector r = b;
        r.AddScaled(-1.0F, times(A, u));
        if (std::sqrt(r.SumOfSquares()) < tol) {
            return;
        }
        auto z = start(r);
        std::size_t k = 0;
        for (int it = 1; it <= maxIter && !converged; ++it) {
            z = inner->Solve(A, r, std::move(z));
            image[k] = times(A, *z);
            for (std::size_t i = 0; i < k; ++i) {
                const float e = toFloat(-(image[i].Dot(image[k])));
                image[k].AddScaled(e, image[i]);
                z->AddScaled(e, search[i]);
            }
            const float h = toFloat(std::sqrt(image[k].Dot(image[k])));
            image[k].DivideScalar(h);
            search[k] = *z;
            search[k].DivideScalar(h);
            const float alpha = toFloat(image[k].Dot(r));
            u.AddScaled(alpha, search[k]);
            r.AddScaled(-alpha, image[k]);
            converged = std::sqrt(r.SumOfSquares()) < tol;
            ++k;
            if (!converged && k == l) {
                *z = r;
                k = 0;
            }
        }
    }
};

/// An inner solver that gives the right-hand side back and notes its start vectors.
class IdentitySolver : public LinearSolver {
  public:
    explicit IdentitySolver(std::vector<RealVector>* starts) : starts_(starts) {}
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b, bool /*rebuild*/,
                                      std::unique_ptr<RealVector> u) override {
        return Solve(A, b, std::move(u));
    }
    std::unique_ptr<RealVector> Solve(const Matrix& /*A*/, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override {
        starts_->push_back(*u);
        u->CopyFrom(b);
        return u;
    }

  private:
    std::vector<RealVector>* starts_;
};

TEST(CombinedKrylovSolver, SolvesDiffusionLinesWithAnInnerDescent) {
    // Looser than the tolerance of the inner descent, which stops at residuals of 0.01 and from
    // there on hands its start vector back.
    CombinedKrylovSolver solver(10, 5, cbb(), 0.05);
    for (const int n : {2, 3, 9, 40, 200}) {
        const FTriDiagonalMatrix A = diffusionLine(n, 2.0F);
        const RealVector b = wavyVector(n);

        const auto u = solver.Solve(A, b, nullptr);

        EXPECT_TRUE(solver.converged()) << n;
        // The smallest eigenvalue is 1, so the error is within the residual norm.
        EXPECT_LT(residualNorm(A, b, *u), 0.051) << n;
        EXPECT_LT(largestError(*u, denseSolve(A, b)), 0.051) << n;
    }
}

TEST(CombinedKrylovSolver, SolvesAllSystemsWithGmresAndMgcrInside) {
    for (const Inner kind : {Inner::Gmres, Inner::Mgcr}) {
        for (const int l : {2, 5}) {
            CombinedKrylovSolver solver(30, l, inner(kind, 5), 0.05);
            for (const KrylovSystem& system : krylovSystems()) {
                const auto u =
                    solver.Solve(*system.A, system.b, start(RealVector(system.b.size())));

                EXPECT_TRUE(solver.converged()) << system.name << l;
                // A little more for rounding; eigenvalues are 1 and more.
                EXPECT_LT(residualNorm(*system.A, system.b, *u), 0.051) << system.name << l;
                EXPECT_LT(largestError(*u, directSolution(*system.A, system.b)), 0.051)
                    << system.name << l;
            }
        }
    }
}

TEST(CombinedKrylovSolver, GivesTheBitsOfThePlainMethodFromSolveToSolve) {
    for (const Inner kind : {Inner::Gmres, Inner::Mgcr}) {
        for (const int l : {2, 3, 10}) {
            for (const int maxIter : {1, 2, 5, 12}) {
                CombinedKrylovSolver solver(maxIter, l, inner(kind, 5), 0.001);
                PlainCombined plain{maxIter, static_cast<std::size_t>(l), inner(kind, 5),
                                    0.001};
                for (const KrylovSystem& system : krylovSystems()) {
                    RealVector expected = system.b;
                    plain.solve(*system.A, system.b, expected);

                    const auto u = solver.Solve(*system.A, system.b, nullptr);

                    EXPECT_TRUE(sameVectorBits(*u, expected)) << system.name << l << maxIter;
                    EXPECT_EQ(solver.converged(), plain.converged) << system.name << l;
                }
            }
        }
    }
}

TEST(CombinedKrylovSolver, KeepsItsToleranceApartFromThatOfItsInnerSolver) {
    CombinedKrylovSolver solver(30, 3, inner(Inner::Gmres, 5), 0.05);
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);

    const auto u = solver.Solve(A, wavyVector(40), nullptr);

    const auto& gmres = dynamic_cast<const GmresSolver&>(solver.inner());
    EXPECT_EQ(gmres.columns(), 2);
    EXPECT_EQ(gmres.maxIter(), 5);
    EXPECT_LE(gmres.tol(), 0.0001);
    EXPECT_EQ(solver.tol(), 0.05);
    // Stopped by its own tolerance: the inner one has not been reached.
    EXPECT_TRUE(solver.converged());
    EXPECT_GT(residualNorm(A, wavyVector(40), *u), 0.001);
}

TEST(CombinedKrylovSolver, LetsTheInnerSolverMeetALostResidual) {
    // What MGCR keeps of it shows in the next solve, which needs one column only.
    const FullMatrix A = scaledIdentity(3, 2.0F);
    const RealVector b = vectorOf({0.0F, 8.0F, 0.0F});
    const RealVector broken(3, std::numeric_limits<float>::infinity());
    const FullMatrix zero(3, 0.0F);
    for (const int maxIter : {1, 2, 6}) {
        CombinedKrylovSolver solver(maxIter, 3, inner(Inner::Mgcr, 5), 0.0001);
        PlainCombined plain{maxIter, 3, inner(Inner::Mgcr, 5), 0.0001};
        const RealVector* const sides[] = {&b, &b, &b, &broken, &b};
        const Matrix* const matrices[] = {&A, &zero, &A, &A, &A};
        for (int i = 0; i < 5; ++i) {
            RealVector expected(3, 0.0F);
            plain.solve(*matrices[i], *sides[i], expected);

            const auto u = solver.Solve(*matrices[i], *sides[i], start(RealVector(3)));

            EXPECT_TRUE(sameBitsOrNan(*u, expected)) << maxIter << ", " << i;
            EXPECT_EQ(solver.converged(), plain.converged) << maxIter << ", " << i;
            // One iteration ends with the loss; of more, the next one meets it.
            if (i == 2) {
                EXPECT_EQ(allNan(*u), maxIter > 1) << maxIter;
            }
        }
    }
}

TEST(CombinedKrylovSolver, LetsAZeroImageThroughAsNan) {
    const FullMatrix zero(3, 0.0F);
    CombinedKrylovSolver solver(4, 2, std::make_unique<GaussSeidelSolver>(0, 0.0), 0.0001);

    const auto u = solver.Solve(zero, wavyVector(3), nullptr);

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(CombinedKrylovSolver, SolvesSystemsWithoutSymmetry) {
    CombinedKrylovSolver solver(50, 3, std::make_unique<GaussSeidelSolver>(2, 0.0), 0.0005);
    const FullMatrix A = dominantMatrix(20);
    const RealVector b = wavyVector(20);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(largestError(*u, denseSolve(A, b)), 1e-4);
}

TEST(CombinedKrylovSolver, ReturnsASolvedStartWithConvergedLow) {
    CombinedKrylovSolver solver(50, 5, cbb(), 0.0001);
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);

    const auto u = solver.Solve(A, solution, start(solution));

    EXPECT_TRUE(sameVectorBits(*u, solution));
    EXPECT_FALSE(solver.converged());
}

TEST(CombinedKrylovSolver, LiftsFewerThanTwoDirectionsToTwo) {
    for (const int l : {-1, 0, 1, 2}) {
        EXPECT_EQ(CombinedKrylovSolver(10, l, cbb(), 0.1).directions(), 2) << l;
    }
    EXPECT_EQ(CombinedKrylovSolver(10, 3, cbb(), 0.1).directions(), 3);
}

TEST(CombinedKrylovSolver, MakesADirectionWhenASolveFirstComesToIt) {
    std::vector<RealVector> starts;
    CombinedKrylovSolver solver(4, 1000000, std::make_unique<IdentitySolver>(&starts), 0.0);
    const FTriDiagonalMatrix A = diffusionLine(9, 3.0F);
    EXPECT_EQ(solver.directionsMade(), 0);

    (void)solver.Solve(A, wavyVector(9), nullptr);
    (void)solver.Solve(A, wavyVector(9), nullptr);

    EXPECT_EQ(solver.directions(), 1000000);
    EXPECT_EQ(solver.directionsMade(), 4);
}

TEST(CombinedKrylovSolver, MakesNoMoreDirectionsThanItsLimit) {
    std::vector<RealVector> starts;
    CombinedKrylovSolver solver(8, 3, std::make_unique<IdentitySolver>(&starts), 0.0);

    (void)solver.Solve(diffusionLine(9, 3.0F), wavyVector(9), nullptr);

    EXPECT_EQ(solver.directionsMade(), 3);
}

TEST(CombinedKrylovSolver, UsedSolverGivesTheBitsOfANewOneAtEverySize) {
    CombinedKrylovSolver used(6, 2, std::make_unique<GaussSeidelSolver>(2, 0.0), 1e-9);
    for (const int n : {9, 20, 9, 4}) {
        CombinedKrylovSolver fresh(6, 2, std::make_unique<GaussSeidelSolver>(2, 0.0), 1e-9);
        const FullMatrix A = dominantMatrix(n);

        const auto expected = fresh.Solve(A, wavyVector(n), nullptr);

        EXPECT_TRUE(sameVectorBits(*used.Solve(A, wavyVector(n), nullptr), *expected)) << n;
    }
}

TEST(CombinedKrylovSolver, EndsTheLoopOnceTheSolutionIsLost) {
    const FullMatrix zero(3, 0.0F);
    CombinedKrylovSolver solver(INT_MAX, INT_MAX, std::make_unique<GaussSeidelSolver>(2, 0.0),
                                0.0001);

    const auto lost = solver.Solve(zero, wavyVector(3), nullptr);
    const int made = solver.directionsMade();
    const auto found = solver.Solve(dominantMatrix(3), wavyVector(3), nullptr);

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(std::isnan((*lost)[i])) << i;
    }
    EXPECT_EQ(made, 1);
    // What was lost does not stay in the solver.
    EXPECT_LT(largestError(*found, denseSolve(dominantMatrix(3), wavyVector(3))), 1e-4);
}

TEST(CombinedKrylovSolver, DropsAllDirectionsAtOnceAndStartsAgainFromTheResidual) {
    std::vector<RealVector> starts;
    CombinedKrylovSolver solver(3, 2, std::make_unique<IdentitySolver>(&starts), 1e-12);
    const FTriDiagonalMatrix A = diffusionLine(6, 3.0F);
    const RealVector b = wavyVector(6);
    CombinedKrylovSolver twoSteps(2, 2, std::make_unique<IdentitySolver>(&starts), 1e-12);
    const auto afterTwo = twoSteps.Solve(A, b, nullptr);
    starts.clear();

    (void)solver.Solve(A, b, nullptr);

    ASSERT_EQ(starts.size(), 3U);
    // The third inner solve begins with the residual that two steps leave; the tolerance is
    // the rounding of the recurred residual.
    const RealVector& third = starts[2];
    const auto product = A.Multiply(*afterTwo, nullptr);
    for (int i = 0; i < 6; ++i) {
        EXPECT_NEAR(third[i], b[i] - (*product)[i], 1e-4) << i;
    }
}

TEST(CombinedKrylovSolver, StartsEachInnerSolveFromTheLastDirection) {
    std::vector<RealVector> starts;
    CombinedKrylovSolver solver(2, 5, std::make_unique<IdentitySolver>(&starts), 1e-12);
    const FTriDiagonalMatrix A = diffusionLine(6, 3.0F);
    const RealVector b = wavyVector(6);

    (void)solver.Solve(A, b, start(RealVector(6)));

    // The first direction is the start residual, here b itself, and so is the next start.
    ASSERT_EQ(starts.size(), 2U);
    EXPECT_TRUE(sameVectorBits(starts[0], b));
    EXPECT_TRUE(sameVectorBits(starts[1], b));
}

TEST(CombinedKrylovSolver, ConvergesAtOnceWithADirectInnerSolver) {
    CombinedKrylovSolver solver(1, 2, std::make_unique<ThomasSolver>(), 0.001);
    const FTriDiagonalMatrix A = diffusionLine(30, 2.0F);

    const auto u = solver.Solve(A, wavyVector(30), nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(largestError(*u, denseSolve(A, wavyVector(30))), 1e-3);
}

TEST(CombinedKrylovSolver, IteratesNothingWithALimitOfZero) {
    CombinedKrylovSolver solver(0, 2, cbb(), 0.0001);
    const RealVector b = wavyVector(4);

    EXPECT_TRUE(sameVectorBits(*solver.Solve(diffusionLine(4, 1.0F), b, nullptr), b));
}

}  // namespace
}  // namespace orv
