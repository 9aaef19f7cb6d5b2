#include "support/solver_systems.h"

#include <gtest/gtest.h>

#include "support/direct_solution.h"

namespace orv {
namespace {

using test::denseSolve;
using test::diffusionPlane;
using test::directSolution;
using test::wavyVector;
using test::windyPlane;

TEST(SolverSystems, ThePlaneIsSymmetricAndTheWindyOneIsNot) {
    const BandMatrix calm = diffusionPlane(5, 4, 2.0F);
    const BandMatrix windy = windyPlane(5, 4, 2.0F);

    EXPECT_EQ(calm.Get(7, 8), calm.Get(8, 7));
    EXPECT_EQ(calm.Get(7, 12), calm.Get(12, 7));
    EXPECT_EQ(calm.Get(4, 5), 0.0F);  // the end of one row and the start of the next
    EXPECT_NE(windy.Get(7, 8), windy.Get(8, 7));
}

TEST(SolverSystems, TwoDirectSolversAgree) {
    const BandMatrix A = windyPlane(6, 5, 3.0F);
    const RealVector b = wavyVector(30);

    const auto sparse = directSolution(A, b);
    const auto dense = denseSolve(A, b);

    for (std::size_t i = 0; i < dense.size(); ++i) {
        EXPECT_NEAR(sparse[i], dense[i], 1e-11) << i;
    }
}

}  // namespace
}  // namespace orv
