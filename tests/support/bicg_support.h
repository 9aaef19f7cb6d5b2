#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"
#include "solvers/iterative_linear_solver.h"
#include "support/matrix_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"

namespace orv::test {

// Vectors as values, element by element, for transcriptions of a method's formulas. The scalars
// round to single precision, a formula with one product is float arithmetic, one with more of
// them is evaluated in double and rounded once.

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

/// Lines, planes with and without symmetry and a dense matrix.
inline std::vector<NamedSystem> sweepSystems() {
    std::vector<NamedSystem> systems;
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
inline void expectSolvesSweep(IterativeLinearSolver& solver, double residual, double error) {
    for (const NamedSystem& system : sweepSystems()) {
        SCOPED_TRACE(system.name);
        expectSolves(solver, *system.A, wavyVector(system.A->Rows()), residual, error);
    }
}

/// u after a number of iterations of a method whose tests never hold.
using Transcription = std::function<RealVector(const Matrix& A, const RealVector& b,
                                               const RealVector& u, int iterations)>;

/// Expects the bits of the transcription after one to six iterations on three kinds of matrix.
inline void expectTranscribed(const SolverMaker& make, const Transcription& transcribe) {
    std::vector<NamedSystem> systems;
    systems.push_back({"line", diffusionLine(40, 3.0F).Clone()});
    systems.push_back({"windy plane", windyPlane(7, 5, 2.0F).Clone()});
    systems.push_back({"dense matrix", dominantMatrix(33).Clone()});
    for (const NamedSystem& system : systems) {
        const int n = system.A->Rows();
        const RealVector u = randomVector(n, 7);
        for (int iterations = 1; iterations <= 6; ++iterations) {
            const auto solver = make(iterations, 0.0);

            const auto actual = solver->Solve(*system.A, wavyVector(n), start(u));

            const RealVector expected = transcribe(*system.A, wavyVector(n), u, iterations);
            EXPECT_FALSE(std::isnan(expected.Sum())) << system.name << ", " << iterations;
            EXPECT_TRUE(sameVectorBits(*actual, expected))
                << system.name << ", " << iterations << " iterations";
        }
    }
}

}  // namespace orv::test
