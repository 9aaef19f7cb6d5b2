#include "schemes/full/heat_flow_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

constexpr float kEpsilon = 0.0001f;

TEST(HeatFlowOperator, LeavesTheTargetAsItWasForTauZero) {
    const FloatImage plane = noisePlane(5, 7, 1);
    HeatFlowOperator heat(0, 3, 1, 0.0f, kEpsilon);

    EXPECT_TRUE(sameBits(*heat.apply(plane, nullptr), plane));
}

TEST(HeatFlowOperator, KeepsAConstantPlaneConstant) {
    const FloatImage flat(6, 4, 100.0f);
    HeatFlowOperator heat(0, 4, 1, 5.0f, kEpsilon);

    const auto result = heat.apply(flat, nullptr);

    for (std::size_t i = 0; i < flat.sampleCount(); ++i) {
        // Eight line solves in float.
        EXPECT_NEAR(result->data()[i], 100.0f, 1e-3f);
    }
}

TEST(HeatFlowOperator, SolvesTheRowsAndThenTheColumnsInPlace) {
    for (const auto& [w, h] : {std::pair{2, 2}, std::pair{3, 6}, std::pair{7, 4}}) {
        const FloatImage plane = noisePlane(w, h, 2);
        HeatFlowOperator heat(0, 1, 1, 2.0f, kEpsilon);
        HeatFlowOperator plainHeat(0, 1, 1, 2.0f, kEpsilon);
        plainHeat.setPlainPath(true);

        const auto result = heat.apply(plane, nullptr);
        const auto plain = plainHeat.apply(plane, nullptr);

        // A diffusivity of 1 everywhere, the border included.
        const DensePlane one(FloatImage(w, h, 1.0f));
        const DensePlane expected = denseSolution(
            denseOperator(one, false, true), 2.0,
            denseSolution(denseOperator(one, true, false), 2.0, DensePlane(plane)));
        EXPECT_LT(largestDifference(*result, expected), 1e-3);
        EXPECT_LT(largestDifference(*plain, expected), 1e-3);
        EXPECT_TRUE(sameBits(*result, *plain));
    }
}

TEST(HeatFlowOperator, IteratesOnItsOwnResult) {
    const FloatImage plane = noisePlane(5, 6, 3);
    HeatFlowOperator once(0, 1, 1, 0.7f, kEpsilon);
    HeatFlowOperator twice(0, 2, 1, 0.7f, kEpsilon);

    auto expected = once.apply(plane, nullptr);
    expected = once.apply(plane, std::move(expected));

    EXPECT_TRUE(sameBits(*twice.apply(plane, nullptr), *expected));
}

TEST(HeatFlowOperator, TakesNothingButTheSizeFromTheSourceWhenATargetIsGiven) {
    const FloatImage plane = noisePlane(5, 6, 4);
    const FloatImage other = noisePlane(5, 6, 5);
    HeatFlowOperator heat(0, 1, 1, 0.7f, kEpsilon);

    EXPECT_TRUE(sameBits(*heat.apply(other, plane.clone()), *heat.apply(plane, nullptr)));
}

TEST(HeatFlowOperator, PrintsItsClassText) {
    EXPECT_EQ(printedName(HeatFlowOperator(0, 1, 1, 1.0f, kEpsilon)),
              "HeatFlow: 2D Linear Solver\n");
}

}  // namespace
}  // namespace orv::test
