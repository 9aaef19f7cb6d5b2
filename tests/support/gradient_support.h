#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "algebra/storage/diagonal_matrix.h"
#include "solvers/iterative_linear_solver.h"
#include "support/direct_solution.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv::test {

/// What a solve left.
struct Solved {
    RealVector u;
    bool converged;
};

/// A method written down step by step, without any thrift: the yardstick of the bits.
using PlainMethod = std::function<Solved(const Matrix& A, const RealVector& b, RealVector u,
                                         int maxIter, double tol)>;

/// A x in a new vector.
inline RealVector product(const Matrix& A, const RealVector& x) {
    return *A.Multiply(x, nullptr);
}

/// The transpose of A times x in a new vector.
inline RealVector transposedProduct(const Matrix& A, const RealVector& x) {
    return *A.MultiplyTransposed(x, nullptr);
}

/// The diagonal matrix of the given elements.
inline DiagonalMatrix diagonal(std::initializer_list<float> elements) {
    DiagonalMatrix A(static_cast<int>(elements.size()), 0.0F);
    int i = 0;
    for (const float element : elements) {
        A.Set(i, i, element);
        ++i;
    }
    return A;
}

/// sqrt(x.x).
inline double norm(const RealVector& x) {
    return std::sqrt(x.SumOfSquares());
}

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

/// A matrix and the name that a failed comparison shows.
struct NamedSystem {
    std::string name;
    std::unique_ptr<Matrix> A;
};

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

/// A solve from zero converges, its true residual in double stays below `residual` and its
/// distance from the direct solution below `error`.
inline void expectSolves(IterativeLinearSolver& solver, const Matrix& A, double residual,
                         double error) {
    const RealVector b = wavyVector(A.Rows());

    const auto u = solver.Solve(A, b, start(RealVector(A.Rows())));

    EXPECT_TRUE(solver.converged()) << A.Rows();
    EXPECT_LT(residualNorm(A, b, *u), residual) << A.Rows();
    EXPECT_LT(largestError(*u, directSolution(A, b)), error) << A.Rows();
}

}  // namespace orv::test
