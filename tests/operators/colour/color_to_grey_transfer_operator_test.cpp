#include "operators/colour/color_to_grey_transfer_operator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "base/runtime_random.h"
#include "exports/progress_window.h"
#include "images/rgb_discrete_image.h"
#include "support/kernel_targets.h"
#include "support/photo_bytes.h"
#include "support/photo_crops.h"
#include "support/plain_colour.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::availableTargets;
using test::noiseRealPlanes;
using test::photoImage;
using test::PlainColour;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;
using test::TargetLimit;

ColorToGreyTransferOperator colouringOperator(int swatchSize = 5) {
    return ColorToGreyTransferOperator(std::make_unique<ColorSpaceChain>(), swatchSize);
}

std::unique_ptr<RgbDiscreteImage> cropImage(const char* name) {
    const test::PhotoCrop crop = test::photoCrop(name);
    return std::make_unique<RgbDiscreteImage>(crop.width, crop.height, crop.bytes.data());
}

// Noise with runs of equal samples, so that windows are flat here and there.
RealImage3 patchyPlanes(int width, int height, unsigned seed) {
    RealImage3 planes = noiseRealPlanes(width, height, seed);
    for (int c = 0; c < 3; ++c) {
        planes.plane(c).add(1.0);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                if (((x / 8) + (y / 8)) % 3 == 0) {
                    planes.plane(c).row(x)[y] = 40.0 * (1 + (x / 8) % 5);
                }
            }
        }
    }
    return planes;
}

void expectPlain(const RealImage3& colour, const RealImage3& grey, int swatchSize = 5) {
    unsigned seed = 1;
    const std::vector<PlainColour::Swatch> swatches =
        PlainColour::swatches(colour, seed, swatchSize);
    const RealImage3 expected =
        PlainColour::colourised(grey, swatches, swatchSize / 2 + swatchSize % 2);
    ColorToGreyTransferOperator op = colouringOperator(swatchSize);
    RealImage3 learned(colour);
    seedRuntimeRandom(1);

    op.learnSwatchPlanes(learned);
    const auto result = op.runPlanes(grey.clone());

    ASSERT_EQ(op.swatchCount(), static_cast<int>(swatches.size()));
    for (int k = 0; k < op.swatchCount(); ++k) {
        const PlainColour::Swatch& swatch = swatches[static_cast<std::size_t>(k)];
        EXPECT_EQ(op.swatch(k).x(), swatch.x);
        EXPECT_EQ(op.swatch(k).y(), swatch.y);
        EXPECT_EQ(op.swatch(k).mean(), swatch.mean);
        EXPECT_EQ(op.swatch(k).deviation(), swatch.deviation);
        EXPECT_EQ(op.swatch(k).alpha(), swatch.alpha);
        EXPECT_EQ(op.swatch(k).beta(), swatch.beta);
    }
    EXPECT_TRUE(sameBits(*result, expected)) << grey.width() << " x " << grey.height();
}

TEST(ColorToGreyTransferOperator, AgreesWithThePlainFormulasOnEveryKernelTarget) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (int side = 1; side < 20; ++side) {
            expectPlain(patchyPlanes(17, 29, 7), patchyPlanes(side, 20 - side, 3));
        }
    }
}

TEST(ColorToGreyTransferOperator, AgreesWithThePlainFormulasForOtherSwatchSizes) {
    for (const int swatchSize : {1, 2, 4, 7, 8}) {
        expectPlain(patchyPlanes(37, 29, 7), patchyPlanes(26, 19, 3), swatchSize);
    }
}

TEST(ColorToGreyTransferOperator, AgreesWithThePlainFormulasToTheBit) {
    for (const auto& [width, height] :
         {std::pair(1, 1), {1, 9}, {2, 3}, {3, 2}, {5, 6}, {7, 4}, {33, 47}, {12, 1060}}) {
        expectPlain(patchyPlanes(37, 29, 7), patchyPlanes(width, height, 3));
    }
}

TEST(ColorToGreyTransferOperator, AgreesWithThePlainFormulasOnPhotos) {
    const auto colour = cropImage("coffee");
    const auto grey = cropImage("chelsea");
    RealImage3 colourPlanes(*colour);
    RealImage3 greyPlanes(*grey);
    for (int c = 0; c < 3; ++c) {
        colourPlanes.plane(c).add(0.25);
        greyPlanes.plane(c).assign(RealImage(*grey));
    }
    expectPlain(colourPlanes, greyPlanes);
}

TEST(ColorToGreyTransferOperator, GivesTheSameBitsOnEveryKernelTarget) {
    const auto colour = cropImage("coffee");
    const RealImage3 grey(*cropImage("chelsea"));
    std::unique_ptr<RealImage3> expected;
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        seedRuntimeRandom(1);
        ColorToGreyTransferOperator op = colouringOperator();
        op.learnSwatches(*colour);

        auto result = op.runPlanes(grey.clone());

        if (expected == nullptr) {
            expected = std::move(result);
        } else {
            EXPECT_TRUE(sameBits(*result, *expected)) << nameOf(target);
        }
    }
}

TEST(ColorToGreyTransferOperator, WritesTruncatedSamplesToANewColourImage) {
    const auto colour = photoImage(40, 30, 2);
    SampleImage grey(23, 19, /*channels=*/1);
    RealImage3 planes(23, 19);
    for (int x = 0; x < 23; ++x) {
        for (int y = 0; y < 19; ++y) {
            const int v = 20 + 9 * x + y;
            grey.setRgb(x, y, v, v, v);
            for (int c = 0; c < 3; ++c) {
                planes.plane(c).row(x)[y] = v;
            }
        }
    }
    ColorToGreyTransferOperator op = colouringOperator();
    seedRuntimeRandom(5);
    op.learnSwatches(*colour);
    RgbDiscreteImage expected(23, 19);
    expected.setFromReal3(*op.runPlanes(planes.clone()));

    const auto result = op.apply(grey, nullptr);

    EXPECT_EQ(result->channels(), 3);
    EXPECT_TRUE(sameSamples(*result, expected));
}

TEST(ColorToGreyTransferOperator, GivesPackedPicturesTheBytesOfItsPlanes) {
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(*photoImage(80, 60, 2));
    for (const auto& [width, height] :
         {std::pair(150, 37), {64, 3}, {65, 3}, {9, 5001}, {8, 4100}, {70, 1501}}) {
        const auto grey = photoImage(width, height, 5);
        RgbDiscreteImage expected(width, height);
        expected.setFromReal3(*op.runPlanes(std::make_unique<RealImage3>(*grey)));

        const auto result = op.apply(*grey, nullptr);

        EXPECT_TRUE(sameSamples(*result, expected)) << width << " x " << height;
    }
}

TEST(ColorToGreyTransferOperator, WritesIntoAGivenTarget) {
    const auto grey = photoImage(23, 19, 8);
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(*photoImage(40, 30, 2));
    const auto expected = op.apply(*grey, nullptr);
    auto target = std::make_unique<RgbDiscreteImage>(23, 19);
    const DiscreteImage* const given = target.get();

    const auto result = op.apply(*grey, std::move(target));

    EXPECT_EQ(result.get(), given);
    EXPECT_TRUE(sameSamples(*result, *expected));
}

TEST(ColorToGreyTransferOperator, DrawsHalfTheSumOfTheSidesInSwatches) {
    ColorToGreyTransferOperator op = colouringOperator();

    op.learnSwatches(*photoImage(20, 31, 2));

    EXPECT_EQ(op.swatchSize(), 5);
    EXPECT_EQ(op.swatchCount(), 25);
    for (int k = 0; k < op.swatchCount(); ++k) {
        EXPECT_EQ(op.swatch(k).width(), 5);
        EXPECT_EQ(op.swatch(k).height(), 5);
        EXPECT_TRUE(op.swatch(k).x() >= 5 && op.swatch(k).x() < 15);
        EXPECT_TRUE(op.swatch(k).y() >= 5 && op.swatch(k).y() < 26);
    }
}

TEST(ColorToGreyTransferOperator, FindsTheOnePlaceOfTheSmallestPicture) {
    ColorToGreyTransferOperator op = colouringOperator();

    op.learnSwatches(*photoImage(11, 11, 2));

    ASSERT_EQ(op.swatchCount(), 11);
    for (int k = 0; k < 11; ++k) {
        EXPECT_EQ(op.swatch(k).x(), 5);
        EXPECT_EQ(op.swatch(k).y(), 5);
    }
}

TEST(ColorToGreyTransferOperator, TakesStatisticsOfTheWholePictureThatNothingReads) {
    const auto colour = photoImage(40, 30, 2);
    const RealImage3 lab = PlainColour::lab(RealImage3(*colour), 0.0);
    ColorToGreyTransferOperator op = colouringOperator();

    op.learnSwatches(*colour);

    for (int k = 0; k < 3; ++k) {
        const auto [mean, deviation] = PlainColour::statistics(lab.plane(k), 0.0);
        EXPECT_EQ(op.styleMean()[static_cast<std::size_t>(k)], mean);
        EXPECT_EQ(op.styleDeviation()[static_cast<std::size_t>(k)], deviation);
    }
}

TEST(ColorToGreyTransferOperator, TakesTheFirstSwatchWhereAWindowHoldsABlackPixel) {
    auto grey = photoImage(30, 30, 8);
    grey->setRgb(15, 15, 0, 0, 0);
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(*photoImage(40, 30, 2));
    const PlainColour::Pixel first = {0.0, op.swatch(0).alpha(), op.swatch(0).beta()};

    const auto result = op.apply(*grey, nullptr);

    // Windows reach from 3 samples before a pixel to 2 behind it.
    for (int x = 13; x <= 18; ++x) {
        for (int y = 13; y <= 18; ++y) {
            PlainColour::Pixel lab = PlainColour::toLab(
                {grey->red(x, y) / 256.0, grey->green(x, y) / 256.0, grey->blue(x, y) / 256.0});
            const PlainColour::Pixel rgb = PlainColour::toRgb({lab[0], first[1], first[2]});
            EXPECT_EQ(result->red(x, y), static_cast<int>(PlainColour::limited(rgb[0])));
            EXPECT_EQ(result->green(x, y), static_cast<int>(PlainColour::limited(rgb[1])));
            EXPECT_EQ(result->blue(x, y), static_cast<int>(PlainColour::limited(rgb[2])));
        }
    }
    EXPECT_EQ(result->red(15, 15), 0);
}

TEST(ColorToGreyTransferOperator, GivesAWindowWithABlackPixelNoScore) {
    RealImage light(9, 20, -0.5);
    light.row(4)[10] = -std::numeric_limits<double>::infinity();
    std::vector<double> scores(20);
    for (const KernelTarget target : availableTargets()) {
        colourKernels(target).windowScores({light.data(), 9, 20, /*x=*/4, /*half=*/3},
                                           scores.data());

        for (std::size_t y = 0; y < scores.size(); ++y) {
            EXPECT_EQ(std::isnan(scores[y]), y >= 8 && y <= 13) << y;
        }
    }
}

TEST(ColorToGreyTransferOperator, LetsABlackColourPictureGiveBlack) {
    const RgbDiscreteImage black(20, 20);
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(black);

    const auto result = op.apply(*photoImage(9, 9, 3), nullptr);

    EXPECT_TRUE(std::isnan(op.swatch(0).score()));
    EXPECT_TRUE(sameSamples(*result, RgbDiscreteImage(9, 9)));
}

TEST(ColorToGreyTransferOperator, CountsANegativeVarianceAsNone) {
    // The mean of equal logarithms squares to a little more than the mean of their squares for
    // some of these greys.
    ColorToGreyTransferOperator op = colouringOperator();
    for (int v = 1; v < 256; ++v) {
        RgbDiscreteImage flat(12, 12);
        flat.fillRgb(v, v, v);

        op.learnSwatches(flat);

        // The square root of a few units in the last place of squares up to 17.
        EXPECT_LT(op.swatch(0).deviation(), 3e-7) << v;
        EXPECT_GE(op.swatch(0).deviation(), 0.0) << v;
    }
}

TEST(ColorToGreyTransferOperator, GivesNullWithoutSwatches) {
    ColorToGreyTransferOperator op = colouringOperator();

    EXPECT_EQ(op.apply(*photoImage(9, 9, 3), nullptr), nullptr);
}

TEST(ColorToGreyTransferOperator, ReportsNoProgress) {
    const test::ProgressRange range(0, 100);
    static int reported = 0;
    progressWindow().callback = [](int) { ++reported; };
    ColorToGreyTransferOperator op = colouringOperator();

    op.learnSwatches(*photoImage(40, 30, 2));
    op.apply(*photoImage(9, 9, 3), nullptr);

    EXPECT_EQ(reported, 0);
}

TEST(ColorToGreyTransferOperator, LooksThroughMasksAndTransforms) {
    const auto grey = photoImage(15, 12, 8);
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(*photoImage(40, 30, 2));
    const auto expected = op.apply(*grey, nullptr);
    const ColorSpaceChain chain;

    EXPECT_TRUE(sameSamples(*op.applyMasked(*grey, *grey, nullptr), *expected));
    EXPECT_TRUE(sameSamples(*op.applyWithTransform(&chain, *grey, nullptr), *expected));
}

TEST(Quirk, SwatchesGoOn) {
    const auto colour = photoImage(60, 50, 2);
    seedRuntimeRandom(1);
    ColorToGreyTransferOperator first = colouringOperator();
    ColorToGreyTransferOperator second = colouringOperator();
    ColorToGreyTransferOperator afresh = colouringOperator();

    first.learnSwatches(*colour);
    second.learnSwatches(*colour);
    seedRuntimeRandom(1);
    afresh.learnSwatches(*colour);

    bool moved = false;
    for (int k = 0; k < first.swatchCount(); ++k) {
        moved = moved || first.swatch(k).x() != second.swatch(k).x();
        EXPECT_EQ(first.swatch(k).x(), afresh.swatch(k).x());
        EXPECT_EQ(first.swatch(k).y(), afresh.swatch(k).y());
    }
    EXPECT_TRUE(moved);
}

TEST(Quirk, SwatchWindow) {
    // One lighter dot: it is seen from 2 samples before it to 3 behind it, and no further.
    const auto colour = photoImage(60, 50, 2);
    ColorToGreyTransferOperator op = colouringOperator();
    op.learnSwatches(*colour);
    RgbDiscreteImage flat(21, 21);
    flat.fillRgb(100, 100, 100);
    RgbDiscreteImage dotted(21, 21);
    dotted.fillRgb(100, 100, 100);
    dotted.setRgb(10, 10, 240, 240, 240);

    const auto before = op.apply(flat, nullptr);
    const auto after = op.apply(dotted, nullptr);

    for (int x = 0; x < 21; ++x) {
        for (int y = 0; y < 21; ++y) {
            const bool near = x >= 8 && x <= 13 && y >= 8 && y <= 13;
            const bool same = before->red(x, y) == after->red(x, y) &&
                              before->green(x, y) == after->green(x, y) &&
                              before->blue(x, y) == after->blue(x, y);
            EXPECT_EQ(same, !near) << x << ", " << y;
        }
    }
    EXPECT_EQ(op.swatch(0).width(), 5);
}

}  // namespace
}  // namespace orv
