#include "images/rgb_discrete_image.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "images/float_image3.h"
#include "images/image_support.h"
#include "images/plain_image.h"
#include "images/real_image3.h"

namespace orv {
namespace {

using test::noiseBytes;
using test::noiseImage;
using test::PlainImage;
using test::rgbAt;
using test::sameBytes;
using Pixel = std::array<int, 3>;

TEST(RgbDiscreteImage, ANewImageHoldsZeros) {
    const RgbDiscreteImage image(5, 3);

    for (int x = 0; x < 5; ++x) {
        for (int y = 0; y < 3; ++y) {
            EXPECT_EQ(rgbAt(image, x, y), (Pixel{0, 0, 0}));
        }
    }
    EXPECT_EQ(image.typeCode(), 10);
    EXPECT_EQ(image.channels(), 3);
    EXPECT_EQ(image.colorModel(), 3);
    EXPECT_EQ(image.depthClass(), 1);
}

TEST(RgbDiscreteImage, PixelsAreInterleavedRowsOnAnAlignedBlock) {
    for (const int width : {1, 2, 3, 37}) {
        const auto bytes = noiseBytes(width, 4, 1);
        RgbDiscreteImage image(width, 4, bytes.data());

        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.data()) % 32, 0u);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < 4; ++y) {
                const auto at = static_cast<std::size_t>(3 * (y * width + x));
                EXPECT_EQ(rgbAt(image, x, y), (Pixel{bytes[at], bytes[at + 1], bytes[at + 2]}));
            }
        }
        EXPECT_EQ(image.packedRgb(), image.data());
    }
}

TEST(RgbDiscreteImage, SizesOfZeroAndBelowCountAsZero) {
    for (const int width : {-4, 0, 2}) {
        RgbDiscreteImage image(width, 0);
        image.fill(3);
        image.setFromFloat3(FloatImage3(image));

        EXPECT_EQ(image.clone()->height(), 0);
    }
}

TEST(RgbDiscreteImage, ValueIsTheTruncatedLuminanceOfTheBytesAsStored) {
    RgbDiscreteImage image(3, 1);
    image.setRgb(0, 0, 255, 255, 255);
    image.setRgb(1, 0, 255, 0, 0);
    image.setRgb(2, 0, 0, 0, 255);

    EXPECT_EQ(image.value(0, 0), 255);
    EXPECT_EQ(image.value(1, 0), 76);
    EXPECT_EQ(image.value(2, 0), 29);
    EXPECT_EQ(image.grey(1, 0), 76);
}

TEST(RgbDiscreteImage, WritesKeepTheLowByte) {
    RgbDiscreteImage image(1, 1);

    image.setRed(0, 0, 300);
    image.setGreen(0, 0, -1);
    image.setBlue(0, 0, 256);
    EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{44, 255, 0}));

    image.setValue(0, 0, 511);
    EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{255, 255, 255}));

    image.setPacked(0, 0, 0x7f102030);
    EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{0x10, 0x20, 0x30}));

    image.fillRgb(257, 258, 259);
    EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{1, 2, 3}));

    image.fill(260);
    EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{4, 4, 4}));
}

TEST(RgbDiscreteImage, PlanesAreTruncatedTowardZeroAndKeepTheLowByte) {
    const float samples[] = {0.9f, -0.9f, 256.0f, -1.0f, 254.99f};
    const int expected[] = {0, 0, 0, 255, 254};
    for (std::size_t i = 0; i < 5; ++i) {
        RgbDiscreteImage image(1, 1);
        image.setChannelFromFloat(FloatImage(1, 1, samples[i]), 2);
        image.setChannelFromReal(RealImage(1, 1, static_cast<double>(samples[i])), 3);

        EXPECT_EQ(rgbAt(image, 0, 0), (Pixel{0, expected[i], expected[i]}));
    }
}

TEST(RgbDiscreteImage, ChannelsOneAndBelowAreRedAndAboveThreeNone) {
    const FloatImage plane(2, 2, 9.0f);
    const RealImage real(2, 2, 8.0);
    for (const int channel : {-1, 0, 1}) {
        RgbDiscreteImage image(2, 2);
        image.setChannelFromFloat(plane, channel);
        EXPECT_EQ(rgbAt(image, 1, 1), (Pixel{9, 0, 0}));
        image.setChannelFromReal(real, channel);
        EXPECT_EQ(rgbAt(image, 1, 1), (Pixel{8, 0, 0}));
    }
    RgbDiscreteImage image(2, 2);
    image.setChannelFromFloat(plane, 4);
    image.setChannelFromReal(real, 4);
    EXPECT_EQ(rgbAt(image, 1, 1), (Pixel{0, 0, 0}));
    image.setChannelFromFloat(plane, 3);
    EXPECT_EQ(rgbAt(image, 1, 1), (Pixel{0, 0, 9}));
}

TEST(RgbDiscreteImage, APlaneMayBeLargerThanTheImage) {
    FloatImage3 planes = test::noisePlanes(6, 9, 3);
    RgbDiscreteImage image(4, 5);

    image.setFromFloat3(planes);

    for (int x = 0; x < 4; ++x) {
        for (int y = 0; y < 5; ++y) {
            EXPECT_EQ(image.green(x, y), static_cast<int>(planes.plane(1).row(x)[y]));
        }
    }
}

TEST(RgbDiscreteImage, ComplexSamplesGiveRealImaginaryOrModulus) {
    ComplexPlane plane(2, 2);
    plane.row(1)[0] = {3.9, -4.0};

    RgbDiscreteImage image(2, 2);
    image.setChannelFromComplex(plane, kRealPart, 1);
    image.setChannelFromComplex(plane, kImaginaryPart, 2);
    image.setChannelFromComplex(plane, kModulus, 3);
    image.setChannelFromComplex(plane, 3, 1);
    image.setChannelFromComplex(plane, kModulus, 4);

    EXPECT_EQ(rgbAt(image, 1, 0), (Pixel{3, 252, 5}));
}

TEST(RgbDiscreteImage, ACloneIsACopyOfThePixels) {
    RgbDiscreteImage image = noiseImage(7, 5, 2);

    const auto clone = image.clone();

    EXPECT_TRUE(sameBytes(static_cast<RgbDiscreteImage&>(*clone), image));
    EXPECT_NE(clone->data(), image.data());
}

TEST(RgbDiscreteImage, CopyFromTakesTheCommonRegionInAllChannels) {
    const RgbDiscreteImage source = noiseImage(3, 5, 3);
    RgbDiscreteImage target(4, 2);

    target.copyFrom(source);

    EXPECT_EQ(rgbAt(target, 2, 1), rgbAt(source, 2, 1));
    EXPECT_EQ(rgbAt(target, 3, 1), (Pixel{0, 0, 0}));
}

TEST(RgbDiscreteImage, CopyMaskedComparesTheMasksLuminanceWithTheMaskValue) {
    const RgbDiscreteImage source = noiseImage(3, 3, 4);
    RgbDiscreteImage mask(2, 2);
    mask.setValue(1, 1, 200);
    RgbDiscreteImage target(3, 3);
    target.setMaskValue(200);

    target.copyMasked(source, &mask);

    EXPECT_EQ(rgbAt(target, 1, 1), rgbAt(source, 1, 1));
    EXPECT_EQ(rgbAt(target, 0, 1), (Pixel{0, 0, 0}));
    EXPECT_EQ(rgbAt(target, 2, 2), (Pixel{0, 0, 0}));
}

TEST(RgbDiscreteImage, CopyChannelTakesTheSameChannel) {
    PlainImage source(1, 1, 3);
    source.setRgb(0, 0, 10, 20, 30);
    for (const int channel : {0, 1, 2, 3, 4}) {
        RgbDiscreteImage image(1, 1);
        image.copyChannel(source, channel);

        const Pixel expected = {channel <= 1 ? 10 : 0, channel == 2 ? 20 : 0,
                                channel == 3 ? 30 : 0};
        EXPECT_EQ(rgbAt(image, 0, 0), expected);
    }
}

TEST(RgbDiscreteImage, PrintsItsKindInFront) {
    const RgbDiscreteImage image(12, 7);
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);

    image.printTo(file);
    std::rewind(file);
    char text[64] = {};
    const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);

    EXPECT_EQ(std::string(text, length), "RGB DiscreteImage(12,7) c=3\n");
    testing::internal::CaptureStdout();
    image.print();
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "RGB DiscreteImage(12,7) c=3\n");
}

TEST(RgbDiscreteImage, ColoursOfBlueAloneAreCountedOnce) {
    RgbDiscreteImage image(20, 20);
    EXPECT_EQ(image.colorCount(), 1);

    image.setBlue(3, 3, 200);
    image.setBlue(4, 3, 200);
    EXPECT_EQ(image.colorCount(), 2);
    EXPECT_EQ(RgbDiscreteImage(0, 0).colorCount(), 0);
}

TEST(Quirk, ColourCount) {
    RgbDiscreteImage small(16, 16);
    small.fillRgb(1, 0, 0);
    RgbDiscreteImage large(257, 1);
    large.fillRgb(1, 0, 0);

    // One colour, entered again at each pixel, until the table is full before a pixel.
    EXPECT_EQ(small.colorCount(), 256);
    EXPECT_EQ(large.colorCount(), -1);
}

}  // namespace
}  // namespace orv
