#include "operators/thin/homomorphic_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/homomorphic_filter.h"
#include "images/rgb_discrete_image.h"
#include "support/photo_crops.h"
#include "support/plain_homomorphic.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::kOwnFunctions;
using test::noiseRealPlanes;
using test::PlainHomomorphic;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

TEST(HomomorphicOperator, PhotosOfEverySizeComeOutAsTheFormulasTell) {
    for (const char* const name : test::kPhotoCrops) {
        SCOPED_TRACE(name);
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage whole(crop.width, crop.height, crop.bytes.data());
        for (const int cut : {0, 1, 2, 3}) {
            const auto photo = whole.subImage(0, 0, crop.width - cut, crop.height - cut / 2);
            const RealImage3 planes(*photo);
            for (const int mode : {1, 4, 8}) {
                const PlainHomomorphic plain(mode, 8.0, 2.0, kOwnFunctions);

                const auto result = HomomorphicOperator(mode, 2.0).apply(*photo, nullptr);

                for (int c = 0; c < 3; ++c) {
                    const RealImage expected = plain.apply(planes.plane(c));
                    const RealImage written(*result, c + 1);
                    for (std::size_t i = 0; i < written.sampleCount(); ++i) {
                        ASSERT_EQ(written.data()[i], toLowByte(toInt(expected.data()[i])));
                    }
                }
            }
        }
    }
}

TEST(HomomorphicOperator, APlaneWithABlackSampleBecomesBlack) {
    RgbDiscreteImage image(8, 6);
    for (int x = 0; x < 8; ++x) {
        for (int y = 0; y < 6; ++y) {
            image.setRgb(x, y, 90, 100, 110);
        }
    }
    image.setRgb(3, 3, 0, 100, 110);

    const auto result = HomomorphicOperator(8, 1.0).apply(image, nullptr);

    for (int x = 0; x < 8; ++x) {
        for (int y = 0; y < 6; ++y) {
            EXPECT_EQ(result->red(x, y), 0);
            EXPECT_NEAR(result->green(x, y), 100, 1);
            EXPECT_NEAR(result->blue(x, y), 110, 1);
        }
    }
}

TEST(HomomorphicOperator, BothColourPathsAndTheMaskedFormsAreOneRun) {
    const RealImage3 planes = noiseRealPlanes(11, 9, 2);
    const SampleImage mask(11, 9, 1);
    HomomorphicOperator op(8, 2.0);

    const auto expected = op.runPlanes(planes, nullptr);

    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(
        sameBits(*op.runPlanes(planes, std::make_unique<RealImage3>(11, 9)), *expected));
}

TEST(HomomorphicOperator, OnePlaneAloneIsThatPlaneOfThree) {
    const RealImage3 planes = noiseRealPlanes(20, 13, 7);
    HomomorphicOperator op(8, 2.0);

    const auto three = op.runPlanes(planes, nullptr);

    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(c)), three->plane(c)));
    }
}

TEST(HomomorphicOperator, GreyRunWritesToTheRedChannelAlone) {
    SampleImage grey(9, 7, 1);
    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 7; ++y) {
            grey.setValue(x, y, 10 * x + y + 1);
        }
    }
    const SampleImage mask(9, 7, 1);
    HomomorphicOperator op(8, 2.0);
    const RealImage expected =
        PlainHomomorphic(8, 8.0, 2.0, kOwnFunctions).apply(RealImage(grey));

    const auto result = op.apply(grey, nullptr);
    const auto masked = op.applyMasked(mask, grey, nullptr);

    EXPECT_TRUE(sameSamples(*result, *masked));
    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 7; ++y) {
            EXPECT_EQ(result->red(x, y), toInt(expected.row(x)[y]));
            EXPECT_EQ(result->green(x, y), grey.green(x, y));
        }
    }
}

TEST(HomomorphicOperator, TheBlurIs8PixelsWideUntilItIsSet) {
    const RealImage3 planes = noiseRealPlanes(12, 15, 4);
    HomomorphicOperator op(4, 2.0);

    const auto wide = op.runPlane(planes.plane(0));
    op.setSigma(1.5);
    const auto narrow = op.runPlane(planes.plane(0));

    EXPECT_TRUE(
        sameBits(*wide, *HomomorphicFilter(4, 8.0, 2.0).apply(planes.plane(0), nullptr)));
    EXPECT_TRUE(
        sameBits(*narrow, *HomomorphicFilter(4, 1.5, 2.0).apply(planes.plane(0), nullptr)));
    EXPECT_FALSE(sameBits(*wide, *narrow));
}

TEST(HomomorphicOperator, GammaCanBeSet) {
    const RealImage3 planes = noiseRealPlanes(12, 15, 5);
    HomomorphicOperator op(8, 2.0);
    op.setGamma(3.0);

    EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(0)),
                         *HomomorphicOperator(8, 3.0).runPlane(planes.plane(0))));
    EXPECT_EQ(op.gamma(), 3.0);
    EXPECT_EQ(op.mode(), 8);
    EXPECT_EQ(op.sigma(), 8.0);
}

std::vector<int>& reports() {
    static std::vector<int> values;
    return values;
}

void ORV_PROGRESS_CALL record(int value) {
    reports().push_back(value);
}

TEST(HomomorphicOperator, Mode8ReportsEachPlaneFromZero) {
    RgbDiscreteImage image(4, 5);
    const test::ProgressRange range(0, 100);
    progressWindow().callback = record;
    reports().clear();

    HomomorphicOperator(8, 2.0).apply(image, nullptr);

    // The planes' slices are 0 to 33, 33 to 66 and 66 to 100.
    EXPECT_EQ(reports(), (std::vector<int>{0, 8, 16, 24, 0, 8, 16, 24, 0, 8, 17, 25}));

    // The window keeps the slice of the last plane, 34 wide, for a second run.
    reports().clear();
    HomomorphicOperator(8, 2.0).apply(image, nullptr);
    EXPECT_EQ(reports(), (std::vector<int>{0, 2, 5, 8, 0, 2, 5, 8, 0, 3, 6, 9}));
}

class StopAtOnce : public WorkObserver {
  public:
    bool onWork(double) override { return false; }
};

TEST(HomomorphicOperator, AStoppedRunStillHasThreePlanes) {
    const RealImage3 planes = noiseRealPlanes(9, 8, 6);
    StopAtOnce observer;
    const WorkObserverScope scope(&observer);

    const auto result = HomomorphicOperator(8, 2.0).runPlanes(planes, nullptr);

    EXPECT_TRUE(sameBits(result->plane(2), planes.plane(2)));
}

TEST(HomomorphicOperator, AcceptsPicturesFrom3Pixels) {
    EXPECT_TRUE(HomomorphicOperator::accepts(3, 3));
    EXPECT_FALSE(HomomorphicOperator::accepts(2, 30));
    EXPECT_FALSE(HomomorphicOperator::accepts(30, 2));
}

}  // namespace
}  // namespace orv
