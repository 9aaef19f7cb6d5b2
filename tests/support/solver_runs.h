#pragma once

#include <gtest/gtest.h>

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

// Running a solver, and what it gives.

namespace orv::test {

/// A x in a new vector.
inline RealVector product(const Matrix& A, const RealVector& x) {
    return *A.Multiply(x, nullptr);
}

/// The transpose of A times x in a new vector.
inline RealVector transposedProduct(const Matrix& A, const RealVector& x) {
    return *A.MultiplyTransposed(x, nullptr);
}

/// b - A u in a new vector, in floats.
inline RealVector residual(const Matrix& A, const RealVector& b, const RealVector& u) {
    RealVector r = b;
    r.AddScaled(-1.0F, product(A, u));
    return r;
}

/// sqrt(x.x).
inline double norm(const RealVector& x) {
    return std::sqrt(x.SumOfSquares());
}

/// A matrix of the given rows, row by row.
inline PlainMatrix matrixOf(const std::vector<std::vector<float>>& rows) {
    PlainMatrix A(static_cast<int>(rows.size()));
    for (int j = 0; j < A.Rows(); ++j) {
        for (int i = 0; i < A.Cols(); ++i) {
            A.Set(i, j, rows[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)]);
        }
    }
    return A;
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

/// A matrix and the name that a failed comparison shows.
struct NamedSystem {
    std::string name;
    std::unique_ptr<Matrix> A;
};

/// What a solve left; the iterations where they are counted.
struct Solved {
    RealVector u;
    bool converged;
    int iterations = 0;
};

/// A method written down step by step, without any thrift: the yardstick of the bits.
using PlainMethod = std::function<Solved(const Matrix& A, const RealVector& b, RealVector u,
                                         int maxIter, double tol)>;

/// Makes a solver of the method under test.
using SolverMaker =
    std::function<std::unique_ptr<IterativeLinearSolver>(int maxIter, double tol)>;

/// The maker of a class that is made of its limit and its tolerance.
template <class Solver>
std::unique_ptr<IterativeLinearSolver> makeOf(int maxIter, double tol) {
    return std::make_unique<Solver>(maxIter, tol);
}

/// A solve of the wavy vector converges, its true residual in double stays below `residual` and
/// its distance from the direct solution below `error`.
inline void expectSolves(IterativeLinearSolver& solver, const Matrix& A, const RealVector& from,
                         double residual, double error) {
    const RealVector b = wavyVector(A.Rows());

    const auto u = solver.Solve(A, b, start(from));

    EXPECT_TRUE(solver.converged()) << A.Rows();
    EXPECT_LT(residualNorm(A, b, *u), residual) << A.Rows();
    EXPECT_LT(largestError(*u, directSolution(A, b)), error) << A.Rows();
}

/// A solve of the wavy vector ends with a residual above that of its start vector and with an
/// error above `error`, and says `converged` to it.
inline void expectMissesSolution(IterativeLinearSolver& solver, const Matrix& A,
                                 const RealVector& from, bool converged, double error) {
    const RealVector b = wavyVector(A.Rows());

    const auto u = solver.Solve(A, b, start(from));

    EXPECT_EQ(solver.converged(), converged);
    EXPECT_GT(residualNorm(A, b, *u), residualNorm(A, b, from));
    EXPECT_GT(largestError(*u, directSolution(A, b)), error);
    EXPECT_FALSE(std::isnan(u->Sum()));
}

/// One iteration that leaves the norm `left` converges for tolerances above `left` alone.
inline void expectStrictTest(const SolverMaker& make, const Matrix& A, const RealVector& b,
                             double left) {
    const auto at = make(1, left);
    const auto above = make(1, std::nextafter(left, HUGE_VAL));

    (void)at->Solve(A, b, start(RealVector(b.size())));
    (void)above->Solve(A, b, start(RealVector(b.size())));

    EXPECT_FALSE(at->converged());
    EXPECT_TRUE(above->converged());
}

}  // namespace orv::test
