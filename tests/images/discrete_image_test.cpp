#include "images/discrete_image.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "images/float_image3.h"
#include "images/plain_image.h"
#include "images/real_image3.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::PlainImage;

/// A grey image of 10 x + y.
std::unique_ptr<PlainImage> numberedGrey(int width, int height) {
    auto image = std::make_unique<PlainImage>(width, height, 1);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            image->setValue(x, y, 10 * x + y);
        }
    }
    return image;
}

TEST(DiscreteImage, FieldsHoldWhatTheConstructorGaveThem) {
    const PlainImage image(4, 3, 1, 2);

    EXPECT_EQ(image.width(), 4);
    EXPECT_EQ(image.height(), 3);
    EXPECT_EQ(image.rowLength(), 4);
    EXPECT_EQ(image.channels(), 1);
    EXPECT_EQ(image.colorModel(), 1);
    EXPECT_EQ(image.depthClass(), 2);
    EXPECT_EQ(image.pi(), 4.0 * std::atan(1.0));
    EXPECT_EQ(image.getOriginX(), 0);
    EXPECT_EQ(image.getOriginY(), 0);
    EXPECT_EQ(image.getMaskValue(), 1);
    EXPECT_EQ(image.minValue(), 0);
    EXPECT_EQ(image.maxValue(), 255);
    EXPECT_EQ(image.bitsPerChannel(), 8);
}

TEST(DiscreteImage, OriginAndMaskValueCanBeSet) {
    PlainImage image(1, 1, 1);

    image.setOrigin(3, -4);
    image.setMaskValue(255);

    EXPECT_EQ(image.getOriginX(), 3);
    EXPECT_EQ(image.getOriginY(), -4);
    EXPECT_EQ(image.getMaskValue(), 255);
}

TEST(DiscreteImage, DefaultsWithoutABodyGiveNullOrMinusOneOrNothing) {
    const auto owned = numberedGrey(2, 2);
    PlainImage& image = *owned;

    image.fill(9);
    image.copyChannel(PlainImage(2, 2, 1), 1);

    EXPECT_EQ(image.interleavedZoom(2, 0, 0, 0), nullptr);
    EXPECT_EQ(image.thumbnail(1), nullptr);
    EXPECT_EQ(image.colorCount(), -1);
    EXPECT_EQ(image.packedRgb(), nullptr);
    EXPECT_EQ(image.value(1, 1), 11);
}

TEST(DiscreteImage, MirrorsAndTheHalfTurnMoveValues) {
    const auto owned = numberedGrey(3, 2);
    const PlainImage& image = *owned;

    const auto mirroredX = image.mirroredX();
    const auto mirroredY = image.mirroredY();
    const auto turned = image.rotated180();

    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 2; ++y) {
            EXPECT_EQ(mirroredX->value(2 - x, y), image.value(x, y));
            EXPECT_EQ(mirroredY->value(x, 1 - y), image.value(x, y));
            EXPECT_EQ(turned->value(2 - x, 1 - y), image.value(x, y));
        }
    }
}

TEST(DiscreteImage, CopyFromWritesValuesAsPackedColours) {
    const auto owned = numberedGrey(3, 2);
    const PlainImage& source = *owned;
    PlainImage colour(2, 2, 3);

    colour.copyFrom(source);

    EXPECT_EQ(colour.red(1, 1), 0);
    EXPECT_EQ(colour.green(1, 1), 0);
    EXPECT_EQ(colour.blue(1, 1), 11);
}

TEST(DiscreteImage, CopyMaskedCopiesWhereTheMaskHasTheMaskValue) {
    const auto owned = numberedGrey(3, 3);
    const PlainImage& source = *owned;
    PlainImage mask(2, 3, 1);
    mask.setValue(0, 0, 1);
    mask.setValue(1, 2, 1);
    mask.setValue(1, 0, 2);
    PlainImage target(3, 3, 1);
    target.fillRgb(-1, -1, -1);

    target.copyMasked(source, &mask);

    EXPECT_EQ(target.value(0, 0), 0);
    EXPECT_EQ(target.value(1, 2), 12);
    EXPECT_EQ(target.value(1, 0), -1);
    EXPECT_EQ(target.value(2, 2), -1);
    target.copyMasked(source, nullptr);
    EXPECT_EQ(target.value(2, 2), 22);
}

TEST(DiscreteImage, ThreePlanesGoToChannelsOneToThree) {
    FloatImage3 floats(1, 1);
    RealImage3 reals(1, 1);
    for (int i = 0; i < 3; ++i) {
        floats.plane(i).fill(static_cast<float>(i) + 10.9f);
        reals.plane(i).fill(i + 20.9);
    }
    PlainImage image(1, 1, 3);

    image.setFromFloat3(floats);
    EXPECT_EQ(image.red(0, 0), 10);
    EXPECT_EQ(image.green(0, 0), 11);
    EXPECT_EQ(image.blue(0, 0), 12);

    image.setFromReal3(reals);
    EXPECT_EQ(image.red(0, 0), 20);
    EXPECT_EQ(image.green(0, 0), 21);
    EXPECT_EQ(image.blue(0, 0), 22);
}

TEST(DiscreteImage, ComplexPlanesAreWrittenForTheRealPartAlone) {
    ComplexPlane3 planes = {ComplexPlane(1, 1), ComplexPlane(1, 1), ComplexPlane(1, 1)};
    for (std::size_t i = 0; i < 3; ++i) {
        planes[i].row(0)[0] = {static_cast<double>(i) + 1.0, 50.0};
    }
    PlainImage image(1, 1, 3);

    image.setFromComplex3(planes, kImaginaryPart);
    image.setFromComplex3(planes, kModulus);
    EXPECT_EQ(image.red(0, 0), 0);

    image.setFromComplex3(planes, kRealPart);
    EXPECT_EQ(image.red(0, 0), 1);
    EXPECT_EQ(image.green(0, 0), 2);
    EXPECT_EQ(image.blue(0, 0), 3);
}

TEST(DiscreteImage, ChannelNumbersOfTheAccessorsCountFromRedAtZero) {
    PlainImage image(1, 1, 3);

    image.setChannel(7, 0, 0, 30);
    image.setChannel(1, 0, 0, 31);
    image.setChannel(2, 0, 0, 32);

    EXPECT_EQ(image.red(0, 0), 30);
    EXPECT_EQ(image.green(0, 0), 31);
    EXPECT_EQ(image.blue(0, 0), 32);
    EXPECT_EQ(image.getChannel(0, 0, 0), 30);
    EXPECT_EQ(image.getChannel(1, 0, 0), 31);
    EXPECT_EQ(image.getChannel(2, 0, 0), 32);
    EXPECT_EQ(image.getChannel(3, 0, 0), 30);
}

TEST(DiscreteImage, ScaledWritesGoToTheirOwnChannel) {
    PlainImage image(7, 7, 3);

    image.setRedScaled(1, 2, 2, 3, 1);
    image.setGreenScaled(1, 2, 2, 3, 2);
    image.setBlueScaled(1, 2, 2, 3, 3);
    image.setValueScaled(2, 1, 2, 3, 4);

    EXPECT_EQ(image.red(2, 6), 1);
    EXPECT_EQ(image.green(2, 6), 2);
    EXPECT_EQ(image.blue(2, 6), 3);
    EXPECT_EQ(image.red(4, 3), 4);
    EXPECT_EQ(image.blue(4, 3), 4);
}

TEST(DiscreteImage, ReplacingAValueAsksForAllThreeChannels) {
    PlainImage image(2, 1, 3);
    image.setRgb(0, 0, 5, 5, 5);
    image.setRgb(1, 0, 5, 5, 6);

    image.replaceValueByValue(5, 9);

    EXPECT_EQ(image.blue(0, 0), 9);
    EXPECT_EQ(image.red(1, 0), 5);
}

TEST(DiscreteImage, ReplacingAColourWritesAColourOrAValue) {
    PlainImage image(2, 1, 3);
    image.setRgb(0, 0, 1, 2, 3);
    image.setRgb(1, 0, 1, 2, 4);

    image.replaceRgbByRgb(1, 2, 3, 7, 8, 9);
    image.replaceRgbByValue(1, 2, 4, 6);

    EXPECT_EQ(image.red(0, 0), 7);
    EXPECT_EQ(image.green(0, 0), 8);
    EXPECT_EQ(image.blue(0, 0), 9);
    EXPECT_EQ(image.green(1, 0), 6);
}

TEST(DiscreteImage, ReplacingInAGreyImageComparesAndWritesTheFirstValue) {
    const auto owned = numberedGrey(2, 2);
    PlainImage& image = *owned;

    image.replaceRgbByRgb(10, 99, 99, 70, 1, 2);
    image.replaceRgbByValue(11, 99, 99, 71);
    image.replaceValueByValue(1, 72);

    EXPECT_EQ(image.value(1, 0), 70);
    EXPECT_EQ(image.value(1, 1), 71);
    EXPECT_EQ(image.value(0, 1), 72);
    EXPECT_EQ(image.value(0, 0), 0);
}

TEST(DiscreteImage, ReplacingWithAnotherChannelCountDoesNothing) {
    PlainImage image(1, 1, 4);

    image.replaceRgbByRgb(0, 0, 0, 1, 1, 1);
    image.replaceRgbByValue(0, 0, 0, 1);
    image.replaceValueByValue(0, 1);

    EXPECT_EQ(image.value(0, 0), 0);
}

TEST(DiscreteImage, PrintsItsSizesAndChannels) {
    const PlainImage image(12, 7, 1);
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);

    image.printTo(file);
    std::rewind(file);
    char text[64] = {};
    const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);

    EXPECT_EQ(std::string(text, length), "DiscreteImage(12,7) c=1\n");
    testing::internal::CaptureStdout();
    image.print();
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "DiscreteImage(12,7) c=1\n");
}

TEST(DiscreteImage, PrintingToAFileFlushesIt) {
    const std::string path = testing::TempDir() + "discrete_image_flush.txt";
    std::FILE* const file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);

    PlainImage(3, 2, 1).printTo(file);

    // Read before the writer closes, which would flush as well.
    std::FILE* const reader = std::fopen(path.c_str(), "r");
    char text[64] = {};
    const std::size_t length =
        reader != nullptr ? std::fread(text, 1, sizeof text - 1, reader) : 0;
    if (reader != nullptr) {
        std::fclose(reader);
    }
    std::fclose(file);
    std::remove(path.c_str());
    EXPECT_EQ(std::string(text, length), "DiscreteImage(3,2) c=1\n");
}

TEST(Quirk, ScaledReads) {
    PlainImage image(7, 7, 3);
    image.setRgb(2, 6, 10, 20, 30);

    const int luminance = image.value(2, 6);

    EXPECT_EQ(image.redScaled(1, 2, 2, 3), luminance);
    EXPECT_EQ(image.greenScaled(1, 2, 2, 3), luminance);
    EXPECT_EQ(image.blueScaled(1, 2, 2, 3), luminance);
    EXPECT_EQ(image.valueScaled(1, 2, 2, 3), luminance);
    EXPECT_NE(luminance, image.red(2, 6));
}

}  // namespace
}  // namespace orv
