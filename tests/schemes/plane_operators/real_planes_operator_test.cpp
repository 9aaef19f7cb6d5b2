#include "schemes/plane_operators/real_planes_operator.h"

#include <gtest/gtest.h>

#include <memory>

#include "schemes/plane_operators/plane_operator_fakes.h"
#include "support/progress_range.h"

namespace orv {
namespace {

using test::AddOneReal;
using test::isFlat;
using test::nameOf;
using test::ProgressRange;

std::unique_ptr<RealImage3> source(int base = 10) {
    return test::steppedPlanes<RealImage3>(4, 3, base);
}

void expectFlat(const RealImage3& planes, double base) {
    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(isFlat(planes.plane(c), base + 100 * c)) << c;
    }
}

TEST(RealPlanesOperator, RunsTheOperatorOnEachPlaneInItsSliceOfTheWindow) {
    AddOneReal op;
    RealPlanesOperator planes(&op);
    const ProgressRange range(50, 100);
    const auto in = source();

    const auto out = planes.apply(*in, source(70));

    expectFlat(*out, 11.0);
    const int ends[] = {0, 16, 33, 50};
    ASSERT_EQ(op.calls.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        const test::Call& call = op.calls[static_cast<std::size_t>(c)];
        EXPECT_EQ(call.source, &in->plane(c));
        EXPECT_EQ(call.guide, &in->plane(c));
        EXPECT_EQ(call.low, ends[c]);
        EXPECT_EQ(call.high, ends[c + 1]);
    }
    EXPECT_EQ(nameOf(planes), "");
}

TEST(RealPlanesOperator, MakesAMissingTarget) {
    AddOneReal op;
    RealPlanesOperator planes(&op);
    const auto in = source();

    expectFlat(*planes.apply(*in, nullptr), 11.0);
    expectFlat(*in, 10.0);
}

TEST(RealPlanesOperator, LeavesTheWindowAloneInTheMaskedForm) {
    AddOneReal op;
    RealPlanesOperator planes(&op);
    const RgbDiscreteImage mask(4, 3);
    const ProgressRange range(30, 60);

    expectFlat(*planes.applyMasked(mask, *source(), nullptr), 11.0);

    EXPECT_EQ(op.lastMask, &mask);
    EXPECT_EQ(op.calls.back().low, 30);
    EXPECT_EQ(progressWindow().progressHigh, 60);
}

TEST(RealPlanesOperator, AccumulatesItsPasses) {
    AddOneReal op;
    RealPlanesOperator planes(&op);
    const RgbDiscreteImage mask(4, 3);

    expectFlat(*planes.iterate(3, *source(), nullptr), 13.0);
    expectFlat(*planes.iterateMasked(2, mask, *source(), source(0)), 12.0);
    expectFlat(*planes.iterate(0, *source(), nullptr), 10.0);
}

}  // namespace
}  // namespace orv
