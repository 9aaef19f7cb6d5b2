#include "images/real_image3.h"

#include <gtest/gtest.h>

#include "images/image_support.h"
#include "images/plain_image.h"

namespace orv {
namespace {

using test::noiseImage;
using test::noiseRealPlanes;
using test::PlainImage;
using test::sameBits;

TEST(RealImage3, AColourImageGivesItsThreeChannels) {
    const RgbDiscreteImage image = noiseImage(65, 66, 1);

    const RealImage3 planes(image);

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(planes.plane(i), RealImage(image, i + 1)));
        EXPECT_EQ(planes.plane(i).channel(), i + 1);
    }
}

TEST(RealImage3, ACopyClonesThePlanes) {
    RealImage3 planes = noiseRealPlanes(5, 4, 7);
    planes.setFlag(6);

    const auto copy = planes.clone();

    EXPECT_TRUE(sameBits(*copy, planes));
    EXPECT_NE(copy->plane(0).data(), planes.plane(0).data());
    EXPECT_EQ(copy->flag(), 6);
}

TEST(RealImage3, GreyImagesGiveTheirValueAndOtherCountsZero) {
    PlainImage grey(2, 2, 1);
    grey.setValue(1, 0, 9);
    PlainImage four(2, 2, 4);
    four.setValue(1, 0, 9);

    EXPECT_EQ(RealImage3(grey).plane(2).row(1)[0], 9.0);
    EXPECT_TRUE(sameBits(RealImage3(four), RealImage3(2, 2)));
}

TEST(RealImage3, AssignOfEqualSizeCopiesAllSamples) {
    const RealImage3 source = noiseRealPlanes(4, 5, 2);
    RealImage3 target(4, 5);
    const double* const before = target.plane(0).data();

    target.assign(source);

    EXPECT_TRUE(sameBits(target, source));
    EXPECT_EQ(target.plane(0).data(), before);
}

TEST(RealImage3, AssignOfAnotherSizeMakesACopy) {
    const RealImage3 source = noiseRealPlanes(4, 5, 3);
    RealImage3 target(5, 4);

    target.assign(source);

    EXPECT_TRUE(sameBits(target, source));
}

TEST(RealImage3, ArithmeticRunsOnAllPlanes) {
    RealImage3 planes(2, 2);

    planes.addAll(6.0);
    planes.scaleAll(2.0);
    planes.divideAll(3.0);

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(planes.plane(i), RealImage(2, 2, 4.0)));
    }
}

}  // namespace
}  // namespace orv
