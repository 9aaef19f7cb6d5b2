#include <gtest/gtest.h>

#include <memory>

#include "exports/progress_window.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "schemes/full/heat_flow_operator.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "schemes/split/lod_2d_restoration.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlanes;
using test::sameBits;

TEST(FloatPlanesOperator, OwnedPlanesGiveTheSamplesOfANullTarget) {
    const FloatImage3 planes = noisePlanes(21, 17, /*seed=*/3);
    FidelityDiffusionFlow flow(1.0, 9.0, /*fidelity=*/0.2, /*kind=*/0, /*gradientNormId=*/0);
    FidelityDiffusionFlow otherFlow(1.0, 9.0, 0.2, 0, 0);
    Lod2DRestoration scheme(0, 2, 1, 1.5, &flow, true, true);
    Lod2DRestoration otherScheme(0, 2, 1, 1.5, &otherFlow, true, true);

    const auto expected = FloatPlanesOperator(&scheme).apply(planes, nullptr);
    const auto actual = FloatPlanesOperator(&otherScheme).applyToOwned(planes.clone());

    EXPECT_TRUE(sameBits(*expected, *actual));
    EXPECT_FALSE(sameBits(planes, *actual));
}

TEST(FloatPlanesOperator, OwnedPlanesNarrowTheWindowAsApplyDoes) {
    const ProgressWindow before = progressWindow();
    progressWindow() = {nullptr, 30, 60};
    FidelityDiffusionFlow flow(0.0, 9.0, 0.2, 0, 0);
    Lod2DRestoration scheme(0, 1, 1, 1.5, &flow, true, true);

    FloatPlanesOperator(&scheme).applyToOwned(noisePlanes(4, 4, /*seed=*/3).clone());

    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
    progressWindow() = before;
}

TEST(FloatPlanesOperator, OwnedPlanesOfAnOperatorThatReadsItsTargetAreCloned) {
    const FloatImage3 planes = noisePlanes(9, 8, /*seed=*/4);
    HeatFlowOperator heat(0, 1, 1, 0.5f, 0.0001f);

    const auto expected = FloatPlanesOperator(&heat).apply(planes, nullptr);
    const auto actual = FloatPlanesOperator(&heat).applyToOwned(planes.clone());

    EXPECT_TRUE(sameBits(*expected, *actual));
}

}  // namespace
}  // namespace orv
