#include "images/float_image.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "images/image_support.h"
#include "images/plain_image.h"

namespace orv {
namespace {

using test::noiseImage;
using test::noisePlane;
using test::PlainImage;
using test::sameBits;

TEST(FloatImage, ANewPlaneHoldsZeros) {
    const FloatImage plane(5, 3);

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        EXPECT_EQ(plane.data()[i], 0.0f);
    }
    EXPECT_EQ(plane.channel(), 0);
    EXPECT_EQ(plane.flag(), 0);
    EXPECT_EQ(plane.pi(), 4.0 * std::atan(1.0));
}

TEST(FloatImage, ColumnsFollowEachOtherOnASixteenByteBoundary) {
    for (const int width : {1, 2, 3, 17}) {
        for (const int height : {1, 2, 5, 64}) {
            const FloatImage plane(width, height, 2.0f);

            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(plane.data()) % 16, 0u);
            for (int x = 0; x < width; ++x) {
                EXPECT_EQ(plane.row(x), plane.data() + x * height);
                EXPECT_EQ(plane.rowNext(x), plane.row(x) + 1);
                EXPECT_EQ(plane.rowPrev(x), plane.row(x) - 1);
            }
        }
    }
}

TEST(FloatImage, APlaneOfWidthOneHasThreeTablesOfOneEntry) {
    FloatImage plane(1, 4);
    for (int y = 0; y < 4; ++y) {
        plane.row(0)[y] = static_cast<float>(y);
    }

    EXPECT_EQ(plane.rowPrev(0)[1], 0.0f);
    EXPECT_EQ(plane.row(0)[1], 1.0f);
    EXPECT_EQ(plane.rowNext(0)[1], 2.0f);
}

TEST(FloatImage, SlackAtTheEndsOfThePlaneIsZero) {
    const FloatImage filled(3, 4, 7.0f);
    const auto open = FloatImage::uninitialised(3, 4);

    for (const FloatImage* plane : {&filled, static_cast<const FloatImage*>(open.get())}) {
        EXPECT_EQ(plane->rowPrev(0)[0], 0.0f);
        EXPECT_EQ(plane->rowNext(2)[3], 0.0f);
    }
}

TEST(FloatImage, SizesOfZeroAndBelowCountAsZero) {
    for (const int width : {-3, 0, 2}) {
        for (const int height : {-1, 0}) {
            FloatImage plane(width, height, 1.0f);
            plane.clamp(0.0f, 1.0f);
            plane.smooth3(1, 2, 1);
            plane.smooth7(1, 1, 1, 1, 1, 1, 1);
            const auto copy = plane.clone();

            EXPECT_EQ(copy->sampleCount(), 0u);
            EXPECT_GE(copy->width(), 0);
            EXPECT_GE(copy->height(), 0);
        }
    }
}

TEST(FloatImage, FromAnImageItHoldsTheLuminance) {
    const RgbDiscreteImage image = noiseImage(7, 5, 1);

    const FloatImage plane(image);

    for (int x = 0; x < 7; ++x) {
        for (int y = 0; y < 5; ++y) {
            EXPECT_EQ(plane.row(x)[y], static_cast<float>(image.value(x, y)));
        }
    }
}

TEST(FloatImage, FromAChannelItHoldsThatChannelAndItsNumber) {
    const RgbDiscreteImage image = noiseImage(4, 3, 2);

    for (const int channel : {-1, 0, 1, 2, 3, 4}) {
        SCOPED_TRACE(channel);
        const FloatImage plane(image, channel);

        EXPECT_EQ(plane.channel(), channel);
        const int expected = channel == 1   ? image.red(3, 1)
                             : channel == 2 ? image.green(3, 1)
                             : channel == 3 ? image.blue(3, 1)
                                            : image.grey(3, 1);
        EXPECT_EQ(plane.row(3)[1], static_cast<float>(expected));
    }
}

TEST(FloatImage, ChannelZeroOfAnImageIsGreyNotRed) {
    RgbDiscreteImage image(1, 1);
    image.setRgb(0, 0, 255, 0, 0);

    EXPECT_EQ(FloatImage(image, 0).row(0)[0], 76.0f);
    EXPECT_EQ(FloatImage(image, 1).row(0)[0], 255.0f);
}

TEST(FloatImage, AnImageWithoutPackedBytesIsReadThroughItsAccessors) {
    PlainImage image(3, 2, 3);
    image.setRgb(2, 1, 1000, -5, 70000);

    EXPECT_EQ(FloatImage(image, 1).row(2)[1], 1000.0f);
    EXPECT_EQ(FloatImage(image, 2).row(2)[1], -5.0f);
    EXPECT_EQ(FloatImage(image, 3).row(2)[1], 70000.0f);
    EXPECT_EQ(FloatImage(image).row(2)[1], static_cast<float>(image.value(2, 1)));
    EXPECT_EQ(FloatImage(image, 9).row(2)[1], static_cast<float>(image.grey(2, 1)));
}

TEST(FloatImage, ACopyTakesSamplesAndFlagButNotTheChannel) {
    FloatImage plane(noiseImage(5, 4, 3), 2);
    plane.setFlag(9);

    const FloatImage copy(plane);
    const auto clone = plane.clone();

    EXPECT_TRUE(sameBits(copy, plane));
    EXPECT_TRUE(sameBits(*clone, plane));
    EXPECT_EQ(copy.flag(), 9);
    EXPECT_EQ(copy.channel(), 0);
    EXPECT_NE(copy.data(), plane.data());
}

TEST(FloatImage, CopyFromCopiesBetweenEqualSizesOnly) {
    const FloatImage source = noisePlane(4, 6, 4);
    FloatImage equal(4, 6);
    FloatImage turned(6, 4, 1.0f);

    equal.copyFrom(source);
    turned.copyFrom(source);

    EXPECT_TRUE(sameBits(equal, source));
    EXPECT_TRUE(sameBits(turned, FloatImage(6, 4, 1.0f)));
}

TEST(FloatImage, ClampRaisesAndLowersToTheBounds) {
    FloatImage plane(1, 6);
    const float samples[] = {255.0f, 300.0f, -1.0f, 0.0f, 12.5f, std::nanf("")};
    for (int y = 0; y < 6; ++y) {
        plane.row(0)[y] = samples[y];
    }

    plane.clamp(0.0f, 255.0f);

    EXPECT_EQ(plane.row(0)[0], 255.0f);
    EXPECT_EQ(plane.row(0)[1], 255.0f);
    EXPECT_EQ(plane.row(0)[2], 0.0f);
    EXPECT_EQ(plane.row(0)[3], 0.0f);
    EXPECT_EQ(plane.row(0)[4], 12.5f);
    EXPECT_TRUE(std::isnan(plane.row(0)[5]));
}

TEST(FloatImage, ClampToCrossedBoundsGivesTheHighest) {
    FloatImage plane(1, 1, 5.0f);

    plane.clamp(10.0f, 3.0f);

    EXPECT_EQ(plane.row(0)[0], 3.0f);
}

TEST(Quirk, FloatAssign) {
    FloatImage target = noisePlane(5, 3, 5);
    const FloatImage before(target);

    target.assign(noisePlane(5, 3, 6));

    EXPECT_TRUE(sameBits(target, before));
}

}  // namespace
}  // namespace orv
