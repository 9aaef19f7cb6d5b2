#include "schemes/plane_operators/real_operator.h"

#include <gtest/gtest.h>

#include <vector>

#include "schemes/plane_operators/plane_operator_fakes.h"

namespace orv {
namespace {

using test::AddOneReal;
using test::isFlat;
using test::maskWith;
using test::nameOf;

TEST(RealOperator, StartsWithTheFullGreyRangeAndNoRegion) {
    const AddOneReal op;

    EXPECT_EQ(op.lower(), 0.0);
    EXPECT_EQ(op.upper(), 255.0);
    EXPECT_EQ(op.regionKey(), 1);
    EXPECT_EQ(op.regionKey2(), 1);
    EXPECT_EQ(op.regionCount(), 0);
    EXPECT_EQ(op.regionCount2(), 0);
    EXPECT_EQ(op.auxiliaryPlane(), nullptr);
    EXPECT_EQ(nameOf(op), "");
}

TEST(RealOperator, StoresWhatItIsGiven) {
    AddOneReal op;
    const RealImage plane(2, 2);

    op.setRange(0.1, 17.25);
    op.setRegionKey(200);
    op.setRegionKey2(100);
    op.setAuxiliaryPlane(&plane);

    EXPECT_EQ(op.lower(), 0.1);
    EXPECT_EQ(op.upper(), 17.25);
    EXPECT_EQ(op.regionKey(), 200);
    EXPECT_EQ(op.regionKey2(), 100);
    EXPECT_EQ(op.auxiliaryPlane(), &plane);
}

TEST(RealOperator, KeepsTwoRegionsApart) {
    AddOneReal op;
    op.setRegionKey(3);
    op.setRegionKey2(5);
    auto mask = maskWith(5, 5, {{2, 3}, {1, 1}}, 3);
    mask->setValue(3, 3, 5);

    op.prepareRegion(*mask);
    op.prepareRegion2(*mask);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{1, 2}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{1, 3}));
    EXPECT_EQ(op.regionXs2(), (std::vector<int>{3}));
    EXPECT_EQ(op.regionYs2(), (std::vector<int>{3}));

    op.releaseRegion();
    EXPECT_EQ(op.regionCount(), 0);
    EXPECT_EQ(op.regionCount2(), 1);
    op.releaseRegion2();
    EXPECT_EQ(op.regionCount2(), 0);
}

TEST(RealOperator, CountsFromZeroWhenARegionIsBuiltTwice) {
    AddOneReal op;
    const auto mask = maskWith(4, 4, {{1, 2}, {2, 1}}, 1);

    op.prepareRegion(*mask);
    op.prepareRegion(*mask);
    op.prepareRegion2(*mask);
    op.prepareRegion2(*mask);

    EXPECT_EQ(op.regionXs().size(), 2U);
    EXPECT_EQ(op.regionXs2().size(), 2U);
}

TEST(RealOperator, AdoptsListsMadeElsewhere) {
    AddOneReal op;

    op.setRegion(1, {4}, {7});
    op.setRegion2(2, {5, 6}, {8, 9});

    EXPECT_EQ(op.regionCount(), 1);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{4}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{7}));
    EXPECT_EQ(op.regionCount2(), 2);
    EXPECT_EQ(op.regionXs2(), (std::vector<int>{5, 6}));
    EXPECT_EQ(op.regionYs2(), (std::vector<int>{8, 9}));
}

TEST(RealOperator, AccumulatesItsPasses) {
    AddOneReal op;
    const RealImage source(3, 2, 4.0);
    const RgbDiscreteImage mask(3, 2);

    EXPECT_TRUE(isFlat(*op.iterate(4, source, nullptr), 8.0));
    EXPECT_TRUE(isFlat(*op.iterateMasked(3, mask, source, nullptr), 7.0));
    EXPECT_EQ(op.lastMask, &mask);
    EXPECT_TRUE(isFlat(source, 4.0));
}

TEST(RealOperator, IteratesNothingForACountOfZeroOrLess) {
    AddOneReal op;
    const RealImage source(3, 2, 4.0);
    for (const int count : {0, -7}) {
        EXPECT_TRUE(isFlat(*op.iterate(count, source, nullptr), 4.0));
        EXPECT_TRUE(isFlat(*op.iterate(count, source, RealImage(3, 2, 9.0).clone()), 9.0));
    }
    EXPECT_TRUE(op.calls.empty());
}

}  // namespace
}  // namespace orv
