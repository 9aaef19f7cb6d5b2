#include "schemes/plane_operators/float_operator.h"

#include <gtest/gtest.h>

#include <vector>

#include "schemes/plane_operators/plane_operator_fakes.h"

namespace orv {
namespace {

using test::AddOneFloat;
using test::isFlat;
using test::maskWith;
using test::nameOf;

TEST(FloatOperator, StartsWithTheFullGreyRangeAndNoRegion) {
    const AddOneFloat op;

    EXPECT_EQ(op.lower(), 0.0F);
    EXPECT_EQ(op.upper(), 255.0F);
    EXPECT_EQ(op.regionKey(), 1);
    EXPECT_EQ(op.regionCount(), 0);
    EXPECT_EQ(nameOf(op), "");
}

TEST(FloatOperator, StoresRangeAndKey) {
    AddOneFloat op;

    op.setRange(-3.5F, 17.25F);
    op.setRegionKey(200);

    EXPECT_EQ(op.lower(), -3.5F);
    EXPECT_EQ(op.upper(), 17.25F);
    EXPECT_EQ(op.regionKey(), 200);
}

TEST(FloatOperator, BuildsAndReleasesTheRegionOfItsKey) {
    AddOneFloat op;
    op.setRegionKey(8);

    op.prepareRegion(*maskWith(5, 5, {{2, 3}, {1, 1}}, 8));
    EXPECT_EQ(op.regionCount(), 2);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{1, 2}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{1, 3}));

    op.releaseRegion();
    EXPECT_EQ(op.regionCount(), 0);
    EXPECT_TRUE(op.regionXs().empty());
}

TEST(FloatOperator, AdoptsListsMadeElsewhere) {
    AddOneFloat op;

    op.setRegion(2, {4, 5, 6}, {7, 8, 9});

    EXPECT_EQ(op.regionCount(), 2);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{4, 5, 6}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{7, 8, 9}));
}

TEST(FloatOperator, DropsTheMaskByDefault) {
    AddOneFloat op;
    FloatOperator& root = op;
    const RgbDiscreteImage mask(3, 2);

    const auto result = root.applyMasked(mask, FloatImage(3, 2, 4.0F), nullptr);

    EXPECT_TRUE(isFlat(*result, 5.0));
}

TEST(FloatOperator, IteratesNothingForACountOfZeroOrLess) {
    AddOneFloat op;
    const FloatImage source(3, 2, 4.0F);
    for (const int count : {0, -7}) {
        const auto made = op.iterate(count, source, nullptr);
        const auto given = op.iterate(count, source, FloatImage(3, 2, 9.0F).clone());

        EXPECT_NE(made.get(), &source);
        EXPECT_TRUE(isFlat(*made, 4.0));
        EXPECT_TRUE(isFlat(*given, 9.0));
    }
    EXPECT_TRUE(op.calls.empty());
}

TEST(FloatOperator, IteratesOnACopyOfTheSource) {
    AddOneFloat op;
    const FloatImage source(3, 2, 4.0F);

    (void)op.iterate(2, source, nullptr);

    ASSERT_EQ(op.calls.size(), 2U);
    EXPECT_NE(op.calls[0].source, &source);
    EXPECT_EQ(op.calls[0].source, op.calls[1].source);
    EXPECT_TRUE(isFlat(source, 4.0));
}

TEST(FloatOperator, HandsTheMaskThroughEachMaskedPass) {
    AddOneFloat op;
    const RgbDiscreteImage mask(3, 2);

    const auto result = op.iterateMasked(3, mask, FloatImage(3, 2, 4.0F), nullptr);

    EXPECT_EQ(op.lastMask, &mask);
    ASSERT_EQ(op.calls.size(), 3U);
    EXPECT_TRUE(op.calls[0].masked && op.calls[1].masked && op.calls[2].masked);
    EXPECT_TRUE(isFlat(*result, 5.0));
}

TEST(FloatOperator, LeavesThePassesOfOneWhenIterated) {
    AddOneFloat op;
    const FloatImage source(3, 2, 4.0F);

    // Each pass starts from the source, since the assign between passes is empty.
    EXPECT_TRUE(isFlat(*op.iterate(1, source, nullptr), 5.0));
    EXPECT_TRUE(isFlat(*op.iterate(4, source, nullptr), 5.0));
}

TEST(Quirk, FloatRegionLength) {
    AddOneFloat op;
    const auto mask = maskWith(4, 4, {{1, 2}, {2, 1}}, 1);

    op.prepareRegion(*mask);
    op.prepareRegion(*mask);

    EXPECT_EQ(op.regionCount(), 2);
    EXPECT_EQ(op.regionXs().size(), 4U);
    EXPECT_EQ(op.regionXs()[0], 1);
    EXPECT_EQ(op.regionXs()[1], 2);
    EXPECT_EQ(op.regionYs()[0], 2);
    EXPECT_EQ(op.regionYs()[1], 1);
}

}  // namespace
}  // namespace orv
