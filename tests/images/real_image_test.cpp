#include "images/real_image.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>

#include "base/elementary.h"
#include "images/image_support.h"
#include "images/plain_image.h"

namespace orv {
namespace {

using test::noiseImage;
using test::noiseRealPlane;
using test::PlainImage;
using test::sameBits;

TEST(RealImage, ColumnsFollowEachOtherAndStartAtZero) {
    const RealImage plane(3, 4);

    for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(plane.row(x), plane.data() + x * 4);
        for (int y = 0; y < 4; ++y) {
            EXPECT_EQ(plane.row(x)[y], 0.0);
        }
    }
}

TEST(RealImage, SizesOfZeroAndBelowCountAsZero) {
    for (const int width : {-2, 0, 3}) {
        RealImage plane(width, -1, 2.0);
        plane.add(1.0);

        EXPECT_EQ(plane.clone()->sampleCount(), 0u);
    }
}

// The sanitizer ends the program where it is asked for so much.
#if !defined(__SANITIZE_ADDRESS__)
TEST(RealImage, MoreSamplesThanMemoryCountsAreRefused) {
    // A little above 2 to the power of 61 samples: 64 bits keep some hundred million bytes.
    constexpr int kSide = 1518500250;

    EXPECT_THROW(RealImage(kSide, kSide), std::bad_alloc);
}
#endif

TEST(RealImage, FromAnImageItHoldsLuminanceOrAChannel) {
    const RgbDiscreteImage image = noiseImage(66, 3, 1);

    const RealImage value(image);
    EXPECT_EQ(value.row(65)[2], image.value(65, 2));
    for (const int channel : {0, 1, 2, 3, 7}) {
        SCOPED_TRACE(channel);
        const RealImage plane(image, channel);
        const int expected = channel == 1   ? image.red(65, 2)
                             : channel == 2 ? image.green(65, 2)
                             : channel == 3 ? image.blue(65, 2)
                                            : image.grey(65, 2);

        EXPECT_EQ(plane.row(65)[2], expected);
        EXPECT_EQ(plane.channel(), channel);
    }
}

TEST(RealImage, SamplesBeyondSinglePrecisionComeThroughTheAccessorsWhole) {
    PlainImage image(1, 1, 3);
    image.setRed(0, 0, 16777217);

    EXPECT_EQ(RealImage(image, 1).row(0)[0], 16777217.0);
}

TEST(RealImage, ACopyTakesSamplesAndFlagButNotTheChannel) {
    RealImage plane(noiseImage(4, 3, 2), 3);
    plane.setFlag(5);

    const RealImage copy(plane);

    EXPECT_TRUE(sameBits(copy, plane));
    EXPECT_EQ(copy.flag(), 5);
    EXPECT_EQ(copy.channel(), 0);
}

TEST(RealImage, AssignCopiesSamplesWithoutComparingSizes) {
    const RealImage source = noiseRealPlane(4, 3, 3);
    RealImage turned(3, 4);

    turned.assign(source);

    EXPECT_TRUE(sameBits(turned.data(), source.data(), 12));
    EXPECT_EQ(turned.width(), 3);
}

TEST(RealImage, CopyRegionCopiesTheListedSamplesAlone) {
    const RealImage source = noiseRealPlane(4, 4, 4);
    RealImage target(4, 4, -1.0);
    const int xs[] = {0, 3, 2};
    const int ys[] = {1, 3, 0};

    target.copyRegion(source, 2, xs, ys);

    EXPECT_EQ(target.row(0)[1], source.row(0)[1]);
    EXPECT_EQ(target.row(3)[3], source.row(3)[3]);
    EXPECT_EQ(target.row(2)[0], -1.0);
    EXPECT_EQ(target.row(1)[0], -1.0);
}

TEST(RealImage, ArithmeticRunsOverAllSamples) {
    const RealImage source = noiseRealPlane(5, 3, 5, 1.0, 100.0);
    const RealImage other = noiseRealPlane(5, 3, 6);
    RealImage added(source);
    RealImage scaled(source);
    RealImage divided(source);
    RealImage difference(source);
    RealImage logarithm(source);
    RealImage power(source);
    RealImage root(source);

    added.add(1.5);
    scaled.scale(0.3);
    divided.divide(0.3);
    difference.subtract(other);
    logarithm.logOf(1.0);
    power.expOf();
    root.sqrtOf();

    for (std::size_t i = 0; i < source.sampleCount(); ++i) {
        const double sample = source.data()[i];
        EXPECT_EQ(added.data()[i], sample + 1.5);
        EXPECT_EQ(scaled.data()[i], sample * 0.3);
        EXPECT_EQ(divided.data()[i], sample / 0.3);
        EXPECT_EQ(difference.data()[i], sample - other.data()[i]);
        EXPECT_EQ(logarithm.data()[i], elementaryLog(sample + 1.0));
        EXPECT_EQ(power.data()[i], elementaryExp(sample));
        EXPECT_EQ(root.data()[i], std::sqrt(sample));
    }
}

TEST(RealImage, LogarithmAndPowerAreThoseOfTheLibraryButForTheLastBit) {
    // 513 samples do not fit one piece of the loop.
    const RealImage source = noiseRealPlane(27, 19, 7, 1.0, 100.0);
    RealImage logarithm(source);
    RealImage power(source);

    logarithm.logOf(1.0);
    power.expOf();

    for (std::size_t i = 0; i < source.sampleCount(); ++i) {
        const double sample = source.data()[i];
        EXPECT_NEAR(logarithm.data()[i], std::log(sample + 1.0), 5.0 * 0x1p-52);
        EXPECT_NEAR(power.data()[i] / std::exp(sample), 1.0, 0x1p-51);
    }
}

TEST(RealImage, TheLogarithmOfZeroIsMinusInfinity) {
    RealImage plane(1, 1, -2.0);

    plane.logOf(2.0);

    EXPECT_EQ(plane.row(0)[0], -std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace orv
