#include "operators/thin/wavelet_denoising_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "support/photo_crops.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"
#include "wavelets/wavelet_shrinkage_operator.h"

namespace orv {
namespace {

using test::noiseRealPlane;
using test::noiseRealPlanes;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

std::unique_ptr<RealImage> shrunk(const RealImage& plane, int algorithm, int levels,
                                  int wavelet) {
    return WaveletShrinkageOperator(algorithm, levels, wavelet).apply(plane, nullptr);
}

TEST(WaveletDenoisingOperator, PhotosOfEverySizeComeOutAsTheirPlanesDo) {
    for (const char* const name : test::kPhotoCrops) {
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage whole(crop.width, crop.height, crop.bytes.data());
        for (const int cut : {0, 1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << name << " less " << cut);
            const auto photo = whole.subImage(0, 0, crop.width - cut, crop.height - cut / 2);
            const RealImage3 planes(*photo);
            const int algorithm = cut % 2;

            const auto result =
                WaveletDenoisingOperator(algorithm, -1, cut + 1).apply(*photo, nullptr);

            for (int c = 0; c < 3; ++c) {
                const auto expected = shrunk(planes.plane(c), algorithm, -1, cut + 1);
                const RealImage written(*result, c + 1);
                for (std::size_t i = 0; i < written.sampleCount(); ++i) {
                    ASSERT_EQ(written.data()[i], toLowByte(toInt(expected->data()[i])));
                }
            }
        }
    }
}

TEST(WaveletDenoisingOperator, TheAlternativePathCopiesThePlanes) {
    const RealImage3 planes = noiseRealPlanes(32, 16, 2);
    const SampleImage mask(32, 16, 1);
    WaveletDenoisingOperator op(1, -1, 1);

    const auto run = op.runPlanes(planes, nullptr);

    EXPECT_FALSE(sameBits(*run, planes));
    EXPECT_TRUE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), *run));
    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), planes));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr), planes));
    EXPECT_TRUE(sameBits(*op.runPlanes(planes, std::make_unique<RealImage3>(32, 16)), *run));
}

TEST(WaveletDenoisingOperator, OnePlaneAloneIsThatPlaneOfThree) {
    const RealImage3 planes = noiseRealPlanes(45, 30, 7);
    WaveletDenoisingOperator op(0, 2, 3);

    const auto three = op.runPlanes(planes, nullptr);

    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(c)), three->plane(c)));
    }
}

TEST(WaveletDenoisingOperator, GreyRunWritesToTheRedChannelAlone) {
    SampleImage grey(16, 8, 1);
    for (int x = 0; x < 16; ++x) {
        for (int y = 0; y < 8; ++y) {
            grey.setValue(x, y, (37 * x + 91 * y * y) % 200);
        }
    }
    const auto expected = shrunk(RealImage(grey), 1, -1, 1);
    const SampleImage mask(16, 8, 1);
    WaveletDenoisingOperator op(1, -1, 1);

    const auto result = op.apply(grey, nullptr);
    const auto kept = op.runGrey(grey, std::make_unique<SampleImage>(16, 8, 1));

    EXPECT_EQ(result->red(4, 3), toInt(expected->row(4)[3]));
    EXPECT_NE(result->red(4, 3), grey.red(4, 3));
    EXPECT_EQ(result->green(4, 3), grey.green(4, 3));
    EXPECT_EQ(kept->red(4, 3), result->red(4, 3));
    EXPECT_EQ(kept->green(4, 3), 0);
    EXPECT_TRUE(sameSamples(*op.runGreyMasked(mask, grey, nullptr), *result));
}

// One operator runs on the three planes; its first run settles the levels.
TEST(WaveletDenoisingOperator, TellsTooManyLevelsOnceForThreePlanes) {
    testing::internal::CaptureStderr();

    WaveletDenoisingOperator(0, 99, 1).runPlanes(noiseRealPlanes(16, 16, 1), nullptr);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Requested too many levels, setting levels to 3\n");
}

TEST(WaveletDenoisingOperator, PrintsTheSignificanceLevelForEveryPlane) {
    testing::internal::CaptureStdout();

    WaveletDenoisingOperator(2, -1, 1).runPlanes(noiseRealPlanes(16, 16, 1), nullptr);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Alpha from table is 0.5\nAlpha from table is 0.5\nAlpha from table is 0.5\n");
}

TEST(WaveletDenoisingOperator, SmallPicturesComeBackAsTheyWere) {
    for (int width = 1; width <= 5; ++width) {
        for (int height = 1; height <= 5; ++height) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            const RealImage3 planes = noiseRealPlanes(width, height, 3);

            EXPECT_TRUE(sameBits(*WaveletDenoisingOperator(0, -1, 4).runPlanes(planes, nullptr),
                                 planes));
        }
    }
}

TEST(WaveletDenoisingOperator, NarrowsTheProgressWindowToAThirdAPlane) {
    const test::ProgressRange range(30, 60);

    WaveletDenoisingOperator(0, -1, 1).runPlanes(noiseRealPlanes(8, 8, 1), nullptr);

    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

TEST(WaveletDenoisingOperator, PlanesThatACancelledRunDoesNotReachAreThoseOfTheSource) {
    class StopAtHalf : public WorkObserver {
      public:
        bool onWork(double done) override { return done < 0.5; }
    };
    const RealImage3 planes = noiseRealPlanes(64, 64, 4);
    StopAtHalf observer;
    const WorkObserverScope scope(&observer);

    const auto result = WaveletDenoisingOperator(1, -1, 1).runPlanes(planes, nullptr);

    EXPECT_FALSE(sameBits(result->plane(0), planes.plane(0)));
    EXPECT_TRUE(sameBits(result->plane(2), planes.plane(2)));
}

TEST(WaveletDenoisingOperator, TellsTheLevelsThatAPictureAllows) {
    const WaveletDenoisingOperator haar(0, -1, 1);

    EXPECT_EQ(haar.levelLimit(512, 300, /*mirrored=*/false), 7);
    EXPECT_EQ(haar.levelLimit(513, 300, /*mirrored=*/false), 9);
    EXPECT_EQ(haar.levelLimit(513, 300, /*mirrored=*/true), 7);
    EXPECT_LT(haar.levelLimit(1, 1, /*mirrored=*/true), 1);
}

}  // namespace
}  // namespace orv
