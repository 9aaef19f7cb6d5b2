#include "schemes/plane_operators/region_list.h"

#include <gtest/gtest.h>

#include <vector>

#include "schemes/plane_operators/plane_operator_fakes.h"

namespace orv {
namespace {

using test::maskWith;

TEST(RegionList, CollectsInteriorPixelsColumnByColumn) {
    const auto mask = maskWith(5, 4, {{3, 1}, {1, 2}, {1, 1}, {2, 2}}, 9);
    std::vector<int> xs;
    std::vector<int> ys;

    EXPECT_EQ(collectRegion(*mask, 9, 0, xs, ys), 4);
    EXPECT_EQ(xs, (std::vector<int>{1, 1, 2, 3}));
    EXPECT_EQ(ys, (std::vector<int>{1, 2, 2, 1}));
}

TEST(RegionList, LeavesTheBorderOut) {
    RgbDiscreteImage mask(4, 5);
    mask.fill(7);
    std::vector<int> xs;
    std::vector<int> ys;

    EXPECT_EQ(collectRegion(mask, 7, 0, xs, ys), 2 * 3);
    for (std::size_t i = 0; i < xs.size(); ++i) {
        EXPECT_TRUE(xs[i] >= 1 && xs[i] <= 2 && ys[i] >= 1 && ys[i] <= 3) << i;
    }
}

TEST(RegionList, IsEmptyOnMasksNarrowerOrLowerThanThree) {
    const int sizes[][2] = {{1, 1}, {2, 9}, {9, 2}, {1, 9}, {9, 1}};
    for (const auto& size : sizes) {
        RgbDiscreteImage mask(size[0], size[1]);
        mask.fill(1);
        std::vector<int> xs(3);
        std::vector<int> ys(3);

        EXPECT_EQ(collectRegion(mask, 1, 0, xs, ys), 0);
        EXPECT_TRUE(xs.empty() && ys.empty());
    }
}

TEST(RegionList, LengthensTheListsByTheCountSoFar) {
    const auto mask = maskWith(3, 3, {{1, 1}}, 4);
    std::vector<int> xs;
    std::vector<int> ys;

    EXPECT_EQ(collectRegion(*mask, 4, 5, xs, ys), 1);
    EXPECT_EQ(xs.size(), 6U);
    EXPECT_EQ(ys.size(), 6U);
    EXPECT_EQ(xs[0], 1);
    EXPECT_EQ(ys[0], 1);
}

}  // namespace
}  // namespace orv
