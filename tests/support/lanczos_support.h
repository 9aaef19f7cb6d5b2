#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <vector>

#include "support/solver_runs.h"
#include "support/solver_systems.h"

namespace orv::test {

/// A method written down for the solves of a new solver: what it keeps begins anew.
using PlainMaker = std::function<PlainMethod()>;

/// Systems of 25 unknowns: symmetric, in the wind and dense.
inline std::vector<NamedSystem> systemsOf25() {
    std::vector<NamedSystem> systems;
    systems.push_back({"line", diffusionLine(25, 2.0F).Clone()});
    systems.push_back({"plane", diffusionPlane(5, 5, 1.0F).Clone()});
    systems.push_back({"windy plane", windyPlane(5, 5, 1.0F).Clone()});
    systems.push_back({"dense", dominantMatrix(25).Clone()});
    return systems;
}

/// The solves of one solver, from constants one after the other and then from b, give the bits
/// of the method written down.
inline void expectWrittenDown(const SolverMaker& make, const PlainMaker& plainOf,
                              std::initializer_list<int> limits,
                              std::initializer_list<float> constants) {
    const RealVector b = wavyVector(25);
    std::vector<RealVector> starts;
    for (const float value : constants) {
        starts.emplace_back(25, value);
    }
    starts.push_back(b);
    for (const NamedSystem& system : systemsOf25()) {
        for (const int maxIter : limits) {
            const auto solver = make(maxIter, 1e-9);
            const PlainMethod plain = plainOf();
            for (const RealVector& from : starts) {
                const Solved expected = plain(*system.A, b, from, maxIter, 1e-9);

                EXPECT_TRUE(
                    sameVectorBits(*solver->Solve(*system.A, b, start(from)), expected.u))
                    << system.name << ", " << maxIter << " from " << from[0];
            }
        }
    }
}

/// A solve converges in the iteration in which the method written down does, in a later one for
/// each of the falling tolerances.
inline void expectStopsLater(const SolverMaker& make, const PlainMaker& plainOf,
                             std::initializer_list<double> tolerances) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    const RealVector b = wavyVector(48);
    int last = 0;
    for (const double tol : tolerances) {
        const Solved expected = plainOf()(A, b, b, 60, tol);
        const auto solver = make(60, tol);

        const auto u = solver->Solve(A, b, nullptr);

        EXPECT_TRUE(solver->converged()) << tol;
        EXPECT_TRUE(expected.converged) << tol;
        EXPECT_GT(expected.iterations, last) << tol;
        EXPECT_TRUE(sameVectorBits(*u, expected.u)) << tol;
        last = expected.iterations;
    }
}

}  // namespace orv::test
