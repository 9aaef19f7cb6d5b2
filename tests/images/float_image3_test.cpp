#include "images/float_image3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "images/image_support.h"
#include "images/plain_image.h"

namespace orv {
namespace {

using test::noiseImage;
using test::noisePlane;
using test::noisePlanes;
using test::PlainImage;
using test::sameBits;

TEST(FloatImage3, NewPlanesHoldZeros) {
    const FloatImage3 planes(4, 3);

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(planes.plane(i), FloatImage(4, 3)));
    }
    EXPECT_EQ(planes.pi(), static_cast<float>(4.0 * std::atan(1.0)));
}

TEST(FloatImage3, AColourImageGivesItsThreeChannels) {
    const RgbDiscreteImage image = noiseImage(9, 70, 1);

    const FloatImage3 planes(image);

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(planes.plane(i), FloatImage(image, i + 1)));
        EXPECT_EQ(planes.plane(i).channel(), i + 1);
    }
}

TEST(FloatImage3, AColourImageWithoutPackedBytesGivesTheSame) {
    PlainImage image(3, 2, 3);
    image.setRgb(1, 1, 10, 20, 30);

    const FloatImage3 planes(image);

    EXPECT_EQ(planes.plane(0).row(1)[1], 10.0f);
    EXPECT_EQ(planes.plane(1).row(1)[1], 20.0f);
    EXPECT_EQ(planes.plane(2).row(1)[1], 30.0f);
    EXPECT_EQ(planes.plane(2).channel(), 3);
}

TEST(FloatImage3, AGreyImageGivesItsValueThreeTimes) {
    PlainImage image(3, 2, 1);
    image.setValue(2, 0, 41);

    const FloatImage3 planes(image);

    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(planes.plane(i).row(2)[0], 41.0f);
        EXPECT_EQ(planes.plane(i).channel(), 0);
    }
}

TEST(FloatImage3, AnyOtherChannelCountLeavesThePlanesZero) {
    PlainImage image(3, 2, 4);
    image.setValue(2, 0, 41);

    const FloatImage3 planes(image);

    EXPECT_TRUE(sameBits(planes, FloatImage3(3, 2)));
}

TEST(FloatImage3, ACopyClonesThePlanes) {
    FloatImage3 planes = noisePlanes(5, 4, 2);
    planes.setFlag(6);

    const auto copy = planes.clone();

    EXPECT_TRUE(sameBits(*copy, planes));
    EXPECT_NE(copy->plane(0).data(), planes.plane(0).data());
    EXPECT_EQ(copy->flag(), 6);
}

TEST(FloatImage3, AssignOfEqualSizeLeavesTheSamplesAsTheyWere) {
    FloatImage3 target = noisePlanes(5, 4, 3);
    const FloatImage3 before(target);

    target.assign(noisePlanes(5, 4, 9));

    EXPECT_TRUE(sameBits(target, before));
}

TEST(FloatImage3, AssignOfAnotherSizeMakesACopy) {
    const FloatImage3 source = noisePlanes(4, 5, 4);
    FloatImage3 target(5, 4);

    target.assign(source);

    EXPECT_TRUE(sameBits(target, source));
    EXPECT_NE(target.plane(1).data(), source.plane(1).data());
}

TEST(FloatImage3, APlaneCanBeTakenOutAndPutBack) {
    FloatImage3 planes = noisePlanes(3, 3, 5);
    const FloatImage second(planes.plane(1));

    auto taken = planes.takePlane(1);
    EXPECT_TRUE(sameBits(*taken, second));
    const FloatImage3 withoutSecond(planes);
    planes.setPlane(1, std::move(taken));

    EXPECT_TRUE(sameBits(planes.plane(1), second));
}

}  // namespace
}  // namespace orv
