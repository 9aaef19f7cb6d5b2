#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "solvers/iterative_linear_solver.h"
#include "support/matrix_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"

namespace orv::test {

/// The same bits, or NaN in both: the sign of a NaN is no result.
inline bool sameResult(const RealVector& a, const RealVector& b) {
    RealVector c = a;
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        c[i] = std::isnan(a[i]) && std::isnan(b[i]) ? b[i] : a[i];
    }
    return sameVectorBits(c, b);
}

/// Whether every element is finite.
inline bool isFinite(const RealVector& u) {
    return std::all_of(u.data(), u.data() + u.size(),
                       [](float element) { return std::isfinite(element); });
}

/// Systems of every storage that the schemes and tests make, small and odd sizes among them.
inline std::vector<NamedSystem> sampleSystems() {
    std::vector<NamedSystem> systems;
    for (const int n : {1, 2, 3, 9, 40}) {
        systems.push_back({"line " + std::to_string(n), diffusionLine(n, 2.0F).Clone()});
    }
    systems.push_back({"plane", diffusionPlane(7, 5, 3.0F).Clone()});
    systems.push_back({"windy plane", windyPlane(6, 4, 1.0F).Clone()});
    systems.push_back({"dominant", dominantMatrix(12).Clone()});
    systems.push_back({"defaults", std::make_unique<PlainMatrix>(dominantMatrix(5))});
    return systems;
}

/// A solve by `solver` gives the bits and the flag of `plain`, from b, from zero and from a
/// start of its own, for limits that end within the iteration and after it.
template <class Solver>
void expectSameAsPlain(const PlainMethod& plain, double tol) {
    for (const NamedSystem& system : sampleSystems()) {
        const Matrix& A = *system.A;
        const RealVector b = wavyVector(A.Rows());
        const RealVector starts[] = {b, RealVector(A.Rows()), randomVector(A.Rows(), 7)};
        for (const int maxIter : {1, 2, 3, 8, 80}) {
            for (const RealVector& from : starts) {
                Solver solver(maxIter, tol);

                const auto u = solver.Solve(A, b, start(from));

                const Solved expected = plain(A, b, from, maxIter, tol);
                EXPECT_TRUE(sameResult(*u, expected.u)) << system.name << ", " << maxIter;
                EXPECT_EQ(solver.converged(), expected.converged)
                    << system.name << ", " << maxIter;
            }
        }
    }
}

/// Solves lines from 1 to 200 unknowns and a plane, to true residuals below `ofLines` and
/// `ofPlane` and errors below `error`.
inline void expectSolvesDiffusion(IterativeLinearSolver& solver, double ofLines, double ofPlane,
                                  double error) {
    for (const int n : {1, 2, 3, 17, 200}) {
        expectSolves(solver, diffusionLine(n, 2.0F), RealVector(n), ofLines, error);
    }
    expectSolves(solver, diffusionPlane(16, 12, 4.0F), RealVector(192), ofPlane, error);
}

/// Solves a plane in the wind to a true residual below `residual`, and a dense dominant matrix.
inline void expectSolvesWithoutSymmetry(IterativeLinearSolver& solver, double residual) {
    expectSolves(solver, windyPlane(16, 12, 1.0F), RealVector(192), residual, 1e-3);
    expectSolves(solver, dominantMatrix(30), RealVector(30), 1e-3, 1e-4);
}

}  // namespace orv::test
