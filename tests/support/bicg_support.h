#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"
#include "solvers/iterative_linear_solver.h"
#include "support/direct_solution.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv::test {

// Vectors as values, element by element, for transcriptions of a method's formulas. The scalars
// round to single precision, a formula with one product is float arithmetic, one with more of
// them is evaluated in double and rounded once.

/// A x.
inline RealVector times(const Matrix& A, const RealVector& x) {
    return *A.Multiply(x, nullptr);
}

/// A-transposed x.
inline RealVector transposedTimes(const Matrix& A, const RealVector& x) {
    return *A.MultiplyTransposed(x, nullptr);
}

/// The Euclidean norm.
inline double norm(const RealVector& x) {
    return std::sqrt(x.SumOfSquares());
}

/// x + a y.
inline RealVector plus(const RealVector& x, double a, const RealVector& y) {
    RealVector sum(x.size());
    for (int i = 0; i < x.size(); ++i) {
        const float product = toFloat(a) * y[i];
        sum[i] = x[i] + product;
    }
    return sum;
}

/// a x + y.
inline RealVector scaledPlus(double a, const RealVector& x, const RealVector& y) {
    return plus(y, a, x);
}

/// One product of a longer formula.
struct Term {
    double factor;
    const RealVector& x;
};

/// The sum of the terms from left to right.
inline RealVector sumOf(const std::vector<Term>& terms) {
    RealVector sum(terms.front().x.size());
    for (int i = 0; i < sum.size(); ++i) {
        double element = 0.0;
        for (const Term& term : terms) {
            element += static_cast<double>(toFloat(term.factor)) * double{term.x[i]};
        }
        sum[i] = toFloat(element);
    }
    return sum;
}

/// A matrix that counts the products with it and looks at their targets.
class SpyMatrix : public PlainMatrix {
  public:
    /// The elements of A; the conjugate product comes out times `conjugateFactor`.
    explicit SpyMatrix(const Matrix& A, float conjugateFactor = 1.0F)
        : PlainMatrix(A), conjugateFactor_(conjugateFactor) {}

    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override {
        if (y && products_++ == 0) {
            firstTargetHeld_ = y->MaxAbs() != 0.0;
        }
        return PlainMatrix::Multiply(x, std::move(y));
    }
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override {
        ++transposedProducts_;
        return PlainMatrix::MultiplyTransposed(x, std::move(y));
    }
    std::unique_ptr<RealVector> MultiplyConjugate(
        const RealVector& x, std::unique_ptr<RealVector> y) const override {
        ++conjugateProducts_;
        y = PlainMatrix::Multiply(x, std::move(y));
        y->MultiplyScalar(conjugateFactor_);
        return y;
    }

    /// Calls of `Multiply` with a target.
    int products() const { return products_; }
    /// Calls of `MultiplyTransposed`.
    int transposedProducts() const { return transposedProducts_; }
    /// Calls of `MultiplyConjugate`.
    int conjugateProducts() const { return conjugateProducts_; }
    /// Whether the target of the first product came with elements other than 0.
    bool firstTargetHeld() const { return firstTargetHeld_; }

  private:
    float conjugateFactor_;
    mutable int products_ = 0;
    mutable int transposedProducts_ = 0;
    mutable int conjugateProducts_ = 0;
    mutable bool firstTargetHeld_ = false;
};

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

/// A named system for sweeps.
struct NamedMatrix {
    std::string name;
    std::unique_ptr<Matrix> A;
};

/// Lines, planes with and without symmetry and a dense matrix.
inline std::vector<NamedMatrix> sweepSystems() {
    std::vector<NamedMatrix> systems;
    for (const int n : {3, 9, 40, 200}) {
        systems.push_back({"line of " + std::to_string(n), diffusionLine(n, 2.0F).Clone()});
    }
    systems.push_back({"plane of 7 x 5", diffusionPlane(7, 5, 2.0F).Clone()});
    systems.push_back({"plane of 15 x 11", diffusionPlane(15, 11, 2.0F).Clone()});
    systems.push_back({"windy plane of 7 x 5", windyPlane(7, 5, 2.0F).Clone()});
    systems.push_back({"windy plane of 15 x 11", windyPlane(15, 11, 2.0F).Clone()});
    systems.push_back({"dense matrix of 20", dominantMatrix(20).Clone()});
    return systems;
}

/// Solves the sweep from b and expects true residuals below `residual`, in double, and errors
/// below `error`, against Eigen's factors.
inline void expectSolvesSweep(IterativeLinearSolver& solver, bool converged, double residual,
                              double error) {
    for (const NamedMatrix& system : sweepSystems()) {
        const RealVector b = wavyVector(system.A->Rows());

        const auto u = solver.Solve(*system.A, b, nullptr);

        EXPECT_EQ(solver.converged(), converged) << system.name;
        EXPECT_LT(residualNorm(*system.A, b, *u), residual) << system.name;
        EXPECT_LT(largestError(*u, directSolution(*system.A, b)), error) << system.name;
    }
}

/// u after a number of iterations of a method whose tests never hold.
using Transcription = std::function<RealVector(const Matrix& A, const RealVector& b,
                                               const RealVector& u, int iterations)>;
/// A solver with a limit and the tolerance 0.
using LimitedSolver = std::function<std::unique_ptr<IterativeLinearSolver>(int maxIter)>;

/// Expects the bits of the transcription after one to six iterations on three kinds of matrix.
inline void expectTranscribed(const LimitedSolver& make, const Transcription& transcribe) {
    std::vector<NamedMatrix> systems;
    systems.push_back({"line", diffusionLine(40, 3.0F).Clone()});
    systems.push_back({"windy plane", windyPlane(7, 5, 2.0F).Clone()});
    systems.push_back({"dense matrix", dominantMatrix(33).Clone()});
    for (const NamedMatrix& system : systems) {
        const int n = system.A->Rows();
        const RealVector u = randomVector(n, 7);
        for (int iterations = 1; iterations <= 6; ++iterations) {
            const auto solver = make(iterations);

            const auto actual = solver->Solve(*system.A, wavyVector(n), start(u));

            const RealVector expected = transcribe(*system.A, wavyVector(n), u, iterations);
            EXPECT_FALSE(std::isnan(expected.Sum())) << system.name << ", " << iterations;
            EXPECT_TRUE(sameVectorBits(*actual, expected))
                << system.name << ", " << iterations << " iterations";
        }
    }
}

}  // namespace orv::test
