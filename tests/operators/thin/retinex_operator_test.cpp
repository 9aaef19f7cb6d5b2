#include "operators/thin/retinex_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/rgb_discrete_image.h"
#include "support/photo_bytes.h"
#include "support/photo_crops.h"
#include "support/plain_retinex.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::noiseRealPlane;
using test::noiseRealPlanes;
using test::photoImage;
using test::PlainRetinex;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

/// The operator's result on a plane by the plain formulas.
RealImage plainResult(const RealImage& plane, const PlainRetinex& retinex) {
    RealImage scaled(plane);
    scaled.add(1.0);
    scaled.divide(256.0);
    RealImage result = retinex.apply(scaled);
    result.scale(255.0);
    return result;
}

TEST(RetinexOperator, PlanesAreScaledRunAndScaledBack) {
    const int sizes[][2] = {{8, 8}, {9, 14}, {23, 17}};
    for (const auto& size : sizes) {
        const RealImage3 planes = noiseRealPlanes(size[0], size[1], 3);

        const auto result = RetinexOperator(2.2, 0.01, 0.1, 3).runPlanes(planes, nullptr);

        for (int c = 0; c < 3; ++c) {
            EXPECT_TRUE(
                sameBits(result->plane(c),
                         plainResult(planes.plane(c), PlainRetinex(2.2, 0.01, 0.1, 3))));
        }
    }
}

TEST(RetinexOperator, PhotosOfEverySizeComeOutAsTheFormulasTell) {
    for (const char* const name : test::kPhotoCrops) {
        SCOPED_TRACE(name);
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage whole(crop.width, crop.height, crop.bytes.data());
        for (const int cut : {0, 1, 2, 3}) {
            const auto photo = whole.subImage(0, 0, crop.width - cut, crop.height - cut / 2);
            const RealImage3 planes(*photo);

            const auto result = RetinexOperator(2.2, 0.0001, 0.1, 5).apply(*photo, nullptr);

            for (int c = 0; c < 3; ++c) {
                const RealImage expected =
                    plainResult(planes.plane(c), PlainRetinex(2.2, 0.0001, 0.1, 5));
                const RealImage written(*result, c + 1);
                for (std::size_t i = 0; i < written.sampleCount(); ++i) {
                    ASSERT_EQ(written.data()[i], toLowByte(toInt(expected.data()[i])));
                }
            }
        }
    }
}

TEST(RetinexOperator, AnAllBlackPictureWorksOnSamplesAboveZero) {
    const RgbDiscreteImage black(16, 12);

    const auto result = RetinexOperator(2.0, 0.01, 0.1, 3).apply(black, nullptr);

    // 1/256 divided by its root is 1/16; times 255 it is 15.9.
    EXPECT_EQ(result->red(0, 0), 15);
    EXPECT_EQ(result->blue(15, 11), 15);
}

TEST(RetinexOperator, BothColourPathsAndTheMaskedFormsAreOneRun) {
    const RealImage3 planes = noiseRealPlanes(11, 9, 2);
    const SampleImage mask(11, 9, 1);
    RetinexOperator op(2.0, 0.01, 0.1, 3);

    const auto expected = op.runPlanes(planes, nullptr);

    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(
        sameBits(*op.runPlanes(planes, std::make_unique<RealImage3>(11, 9)), *expected));
}

TEST(RetinexOperator, OnePlaneAloneIsThatPlaneOfThree) {
    const RealImage3 planes = noiseRealPlanes(20, 13, 7);
    RetinexOperator op(2.0, 0.01, 0.1, 3);

    const auto three = op.runPlanes(planes, nullptr);

    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(c)), three->plane(c)));
    }
}

TEST(RetinexOperator, GreyRunWritesToTheRedChannelAlone) {
    SampleImage grey(9, 7, 1);
    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 7; ++y) {
            grey.setValue(x, y, 10 * x + y);
        }
    }
    RetinexOperator op(2.0, 0.01, 0.1, 2);
    const auto expected = op.runPlane(RealImage(grey));
    const SampleImage mask(9, 7, 1);

    const auto result = op.apply(grey, nullptr);
    const auto kept = op.runGrey(grey, std::make_unique<SampleImage>(9, 7, 1));

    EXPECT_EQ(result->red(4, 3), toInt(expected->row(4)[3]));
    EXPECT_NE(result->red(4, 3), grey.red(4, 3));
    EXPECT_EQ(result->green(4, 3), grey.green(4, 3));
    EXPECT_EQ(kept->red(4, 3), result->red(4, 3));
    EXPECT_EQ(kept->green(4, 3), 0);
    EXPECT_TRUE(sameSamples(*op.runGreyMasked(mask, grey, nullptr), *result));
}

TEST(RetinexOperator, SettersTakeThePlaceOfTheConstructorsValues) {
    const RealImage plane = noiseRealPlane(16, 16, 1);
    RetinexOperator op(9.0, 9.0, 9.0, 3);

    op.setAlpha(0.3);
    op.setBeta(0.2);
    op.setGamma(1.7);

    EXPECT_TRUE(
        sameBits(*op.runPlane(plane), *RetinexOperator(1.7, 0.3, 0.2, 3).runPlane(plane)));
}

TEST(RetinexOperator, LevelsThatThePictureDoesNotAllowGiveNull) {
    const auto photo = photoImage(9, 7, 1);
    const SampleImage grey(9, 7, 1);
    for (const int levels : {-3, 0, 4, 1000000000}) {
        SCOPED_TRACE(levels);
        RetinexOperator op(2.0, 0.01, 0.1, levels);

        EXPECT_EQ(op.apply(*photo, nullptr), nullptr);
        EXPECT_EQ(op.apply(grey, nullptr), nullptr);
        EXPECT_FALSE(op.accepts(9, 7));
    }
    EXPECT_TRUE(RetinexOperator(2.0, 0.01, 0.1, 3).accepts(9, 7));
    EXPECT_FALSE(RetinexOperator(0.0, 0.01, 0.1, 3).accepts(9, 7));
    EXPECT_FALSE(RetinexOperator(2.0, 0.01, 0.1, 1).accepts(0, 7));
}

TEST(RetinexOperator, NarrowsTheProgressWindowToAThirdAPlane) {
    const test::ProgressRange range(30, 60);

    RetinexOperator(2.0, 0.01, 0.1, 2).runPlanes(noiseRealPlanes(8, 8, 1), nullptr);

    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

TEST(RetinexOperator, PlanesThatACancelledRunDoesNotReachAreThoseOfTheSource) {
    class StopAtHalf : public WorkObserver {
      public:
        bool onWork(double done) override { return done < 0.5; }
    };
    const RealImage3 planes = noiseRealPlanes(40, 40, 4);
    StopAtHalf observer;
    const WorkObserverScope scope(&observer);

    const auto result = RetinexOperator(2.0, 0.01, 0.1, 3).runPlanes(planes, nullptr);

    EXPECT_FALSE(sameBits(result->plane(0), planes.plane(0)));
    EXPECT_TRUE(sameBits(result->plane(2), planes.plane(2)));
}

TEST(Quirk, RetinexScaling) {
    RealImage plane(4, 4, 100.0);
    plane.row(0)[0] = 0.0;
    plane.row(3)[3] = 255.0;

    const auto result = RetinexOperator(/*gamma=*/1.0, 0.01, 0.1, 2).runPlane(plane);

    EXPECT_EQ(result->row(1)[1], 101.0 / 256.0 * 255.0);  // 100.6
    EXPECT_EQ(result->row(0)[0], 255.0 / 256.0);          // truncated to 0
    EXPECT_EQ(result->row(3)[3], 255.0);
}

}  // namespace
}  // namespace orv
