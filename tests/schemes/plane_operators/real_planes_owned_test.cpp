#include <gtest/gtest.h>

#include "schemes/plane_operators/plane_operator_fakes.h"
#include "schemes/plane_operators/real_planes_operator.h"
#include "support/plane_support.h"
#include "support/progress_range.h"

namespace orv {
namespace {

using test::AddOneReal;
using test::noiseRealPlanes;
using test::sameBits;
using test::steppedPlanes;

TEST(RealPlanesOperator, OwnedPlanesGiveTheSamplesOfANullTarget) {
    const RealImage3 planes = noiseRealPlanes(5, 4, 1);
    AddOneReal plusOne;

    const auto owned = RealPlanesOperator(&plusOne).applyToOwned(planes.clone());

    EXPECT_TRUE(sameBits(*owned, *RealPlanesOperator(&plusOne).apply(planes, nullptr)));
}

TEST(RealPlanesOperator, OwnedPlanesShareTheMemoryOfTheOneBefore) {
    auto planes = steppedPlanes<RealImage3>(3, 3, 10);
    const double* const first = planes->plane(0).data();
    const double* const second = planes->plane(1).data();
    AddOneReal plusOne;

    planes = RealPlanesOperator(&plusOne).applyToOwned(std::move(planes));

    EXPECT_EQ(planes->plane(1).data(), first);
    EXPECT_EQ(planes->plane(2).data(), second);
    EXPECT_EQ(planes->plane(2).row(2)[2], 211.0);
}

TEST(RealPlanesOperator, OwnedPlanesNarrowTheWindowAsApplyDoes) {
    const test::ProgressRange range(30, 60);
    AddOneReal plusOne;

    RealPlanesOperator(&plusOne).applyToOwned(steppedPlanes<RealImage3>(2, 2, 0));

    ASSERT_EQ(plusOne.calls.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        const auto& call = plusOne.calls[static_cast<std::size_t>(c)];
        EXPECT_EQ(call.low, 10 * c);
        EXPECT_EQ(call.high, 10 * c + 10);
        EXPECT_EQ(call.guide, call.source);
    }
}

}  // namespace
}  // namespace orv
