#include "operators/shock/shock_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/shock/shock_reference.h"
#include "support/photo_bytes.h"
#include "support/photo_crops.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::photoImage;
using test::plainShock;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

ShockOperator operatorOf(int method, int iterations, double timeStep) {
    return {iterations, method, timeStep, kShockDiffusionWeight, kShockArctanScale};
}

std::unique_ptr<DiscreteImage> plainImage(int method, const DiscreteImage& image,
                                          int iterations, double timeStep) {
    RealImage3 planes(image);
    for (int i = 0; i < 3; ++i) {
        planes.plane(i).assign(plainShock(method, planes.plane(i), iterations, timeStep));
    }
    auto result = image.clone();
    result->setFromReal3(planes);
    return result;
}

TEST(ShockOperator, RunsEachPlaneOfAPhotoThroughTheFormula) {
    for (const char* const name : test::kPhotoCrops) {
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage image(crop.width, crop.height, crop.bytes.data());
        for (int method = 0; method < 4; ++method) {
            const auto result = operatorOf(method, 3, 0.2).apply(image, nullptr);

            EXPECT_TRUE(sameSamples(*result, *plainImage(method, image, 3, 0.2)))
                << name << ", " << method;
            EXPECT_FALSE(sameSamples(*result, image));
        }
    }
}

TEST(ShockOperator, UnknownMethodsAreMethod0) {
    const auto image = photoImage(20, 17, 3);
    const auto expected = operatorOf(0, 2, 0.3).apply(*image, nullptr);
    for (const int method : {7, -1, 4}) {
        EXPECT_TRUE(sameSamples(*operatorOf(method, 2, 0.3).apply(*image, nullptr), *expected));
    }
}

TEST(ShockOperator, SmallPicturesAndNoIterationsComeBack) {
    for (int method = 0; method < 4; ++method) {
        for (const auto& image :
             {photoImage(2, 9, 1), photoImage(9, 2, 1), photoImage(1, 1, 1)}) {
            EXPECT_TRUE(
                sameSamples(*operatorOf(method, 5, 0.3).apply(*image, nullptr), *image));
        }
        const auto image = photoImage(9, 9, 1);
        EXPECT_TRUE(sameSamples(*operatorOf(method, 0, 0.3).apply(*image, nullptr), *image));
    }
}

TEST(ShockOperator, ConstantPicturesStayConstant) {
    RgbDiscreteImage image(8, 9);
    image.fill(131);
    for (int method = 0; method < 4; ++method) {
        EXPECT_TRUE(sameSamples(*operatorOf(method, 6, 0.4).apply(image, nullptr), image));
    }
}

TEST(ShockOperator, TheIterationsAreTheChannelMode) {
    const auto image = photoImage(20, 17, 3);
    ShockOperator op = operatorOf(1, 4, 0.3);

    EXPECT_EQ(op.channelMode(), 4);

    op.setChannelMode(2);
    EXPECT_TRUE(
        sameSamples(*op.apply(*image, nullptr), *operatorOf(1, 2, 0.3).apply(*image, nullptr)));
}

TEST(ShockOperator, AReservedNumberChangesNothing) {
    const auto image = photoImage(20, 17, 3);
    for (int method = 0; method < 4; ++method) {
        ShockOperator op = operatorOf(method, 2, 0.3);
        op.setReservedNumber(5);

        EXPECT_TRUE(sameSamples(*op.apply(*image, nullptr),
                                *operatorOf(method, 2, 0.3).apply(*image, nullptr)));
    }
}

TEST(ShockOperator, OneChannelIsWrittenToRedAlone) {
    SampleImage image(14, 12, 1);
    test::Noise noise(3);
    for (int x = 0; x < 14; ++x) {
        for (int y = 0; y < 12; ++y) {
            image.setSample(x, y, 0, noise.integer(0, 255));
            image.setSample(x, y, 1, 9);
        }
    }
    for (int method = 0; method < 4; ++method) {
        auto expected = image.clone();
        expected->setChannelFromReal(plainShock(method, RealImage(image), 3, 0.3), 0);

        EXPECT_TRUE(sameSamples(*operatorOf(method, 3, 0.3).apply(image, nullptr), *expected));
        EXPECT_TRUE(
            sameSamples(*operatorOf(method, 3, 0.3).apply(image, image.clone()), *expected));
    }
}

TEST(ShockOperator, AMaskLimitsTheRunToItsOnes) {
    const auto image = photoImage(16, 14, 3);
    SampleImage grey(16, 14, 1);
    SampleImage mask(16, 14, 3);
    for (int x = 0; x < 16; ++x) {
        for (int y = 0; y < 14; ++y) {
            grey.setSample(x, y, 0, image->red(x, y));
            mask.setSample(x, y, 0, x < 8 ? 1 : 0);
        }
    }
    for (int method = 0; method < 4; ++method) {
        ShockOperator op = operatorOf(method, 1, 0.3);
        const auto whole = op.apply(*image, nullptr);
        const auto masked = op.applyMasked(mask, *image, nullptr);
        const auto wholeGrey = op.apply(grey, nullptr);
        const auto maskedGrey = op.applyMasked(mask, grey, nullptr);
        for (int x = 0; x < 16; ++x) {
            for (int y = 0; y < 14; ++y) {
                EXPECT_EQ(masked->green(x, y), (x < 8 ? *whole : *image).green(x, y));
                EXPECT_EQ(
                    maskedGrey->red(x, y),
                    (x < 8 ? *wholeGrey : static_cast<const DiscreteImage&>(grey)).red(x, y));
            }
        }
        EXPECT_FALSE(sameSamples(*masked, *image));
    }
}

TEST(ShockOperator, TheAlternativePathsAreTheSame) {
    const RealImage3 planes = test::noiseRealPlanes(12, 9, 3);
    SampleImage mask(12, 9, 3);
    mask.setSample(4, 4, 0, 1);
    ShockOperator op = operatorOf(3, 2, 0.3);

    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), *op.runPlanes(planes, nullptr)));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr),
                         *op.runPlanesMasked(mask, planes, nullptr)));
    EXPECT_FALSE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), planes));
}

TEST(ShockOperator, OnePlaneIsThatOfThree) {
    const RealImage3 planes = test::noiseRealPlanes(12, 9, 3);
    for (int method = 0; method < 4; ++method) {
        ShockOperator op = operatorOf(method, 2, 0.3);
        const auto three = op.runPlanes(planes, nullptr);
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(i)), three->plane(i)));
        }
    }
}

TEST(ShockOperator, MovesTheProgressWindowAndReportsNothing) {
    static int calls = 0;
    calls = 0;
    const test::ProgressRange range(30, 60);
    progressWindow().callback = [](int) { ++calls; };

    operatorOf(1, 3, 0.3).apply(*photoImage(20, 20, 1), nullptr);

    EXPECT_EQ(calls, 0);
    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

}  // namespace
}  // namespace orv
