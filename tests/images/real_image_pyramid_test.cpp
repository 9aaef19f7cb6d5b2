#include "images/real_image_pyramid.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/plane_support.h"

namespace orv {
namespace {

using test::noiseRealPlane;
using test::sameBits;

TEST(RealImagePyramid, LevelsHalveWithTruncationAtEachStep) {
    const RealImagePyramid pyramid(RealImage(100, 37), 4, 0.5, true);

    const int widths[] = {100, 50, 25, 12};
    const int heights[] = {37, 18, 9, 4};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(pyramid.widthAt(i), widths[i]);
        EXPECT_EQ(pyramid.heightAt(i), heights[i]);
        EXPECT_EQ(pyramid.level(i)->width(), widths[i]);
        EXPECT_EQ(pyramid.level(i)->height(), heights[i]);
    }
    EXPECT_TRUE(sameBits(*pyramid.level(2), RealImage(25, 9)));
}

TEST(RealImagePyramid, TruncationIsPerStepNotOfTheProduct) {
    const RealImagePyramid pyramid(RealImage(11, 1), 3, 0.7, false);

    // 11 x 0.7 = 7.7 -> 7, 7 x 0.7 = 4.9 -> 4, while 11 x 0.49 would give 5.
    EXPECT_EQ(pyramid.widthAt(2), 4);
}

TEST(RealImagePyramid, LevelZeroIsACloneOfTheSource) {
    const RealImage source = noiseRealPlane(6, 4, 1);

    const RealImagePyramid pyramid(source, 1, 0.5, true);

    EXPECT_TRUE(sameBits(*pyramid.level(0), source));
    EXPECT_NE(pyramid.level(0)->data(), source.data());
}

TEST(RealImagePyramid, TakesOverAPlaneThatIsHandedIn) {
    auto base = noiseRealPlane(7, 5, 2).clone();
    const double* const samples = base->data();

    const RealImagePyramid pyramid(std::move(base), 2, 0.5, true);

    EXPECT_EQ(pyramid.level(0)->data(), samples);
    EXPECT_EQ(pyramid.width(), 7);
    EXPECT_EQ(pyramid.height(), 5);
    EXPECT_TRUE(sameBits(*pyramid.level(1), RealImage(3, 2)));
}

TEST(RealImagePyramid, WithoutAllocationFurtherLevelsAreNullUntilSet) {
    RealImagePyramid pyramid(RealImage(8, 8), 3, 0.5, false);

    EXPECT_EQ(pyramid.level(1), nullptr);
    EXPECT_EQ(pyramid.level(2), nullptr);
    pyramid.setLevel(1, std::make_unique<RealImage>(4, 4));
    EXPECT_EQ(pyramid.level(1)->width(), 4);
    EXPECT_EQ(pyramid.takeLevel(1)->width(), 4);
    EXPECT_EQ(pyramid.level(1), nullptr);
}

}  // namespace
}  // namespace orv
