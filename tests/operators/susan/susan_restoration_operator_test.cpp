#include "operators/susan/susan_restoration_operator.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/cpu_features.h"
#include "base/elementary.h"
#include "base/rounding.h"
#include "exports/progress_window.h"
#include "images/rgb_discrete_image.h"
#include "support/photo_bytes.h"
#include "support/photo_crops.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::Noise;
using test::photoImage;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

struct Offset {
    int x;
    int y;
};

// The disc entry by entry, written out; (2, -2) is missing.
constexpr std::array<Offset, 35> kDisc = {{
    {-3, -1}, {-3, 0},  {-3, 1}, {-2, -2}, {-2, -1}, {-2, 0}, {-2, 1}, {-2, 2}, {-1, -3},
    {-1, -2}, {-1, -1}, {-1, 0}, {-1, 1},  {-1, 2},  {-1, 3}, {0, -3}, {0, -2}, {0, -1},
    {0, 1},   {0, 2},   {0, 3},  {1, -3},  {1, -2},  {1, -1}, {1, 0},  {1, 1},  {1, 2},
    {1, 3},   {2, -1},  {2, 0},  {2, 1},   {2, 2},   {3, -1}, {3, 0},  {3, 1},
}};

// The formula, sample by sample.
template <class At>
double plainValue(At at, int width, int height, int x, int y, double threshold, double sigma) {
    const double inverse = 1.0 / threshold;
    double sum = 0.0;
    double acc = 0.0;
    for (const Offset& o : kDisc) {
        const int nx = x + o.x;
        const int ny = y + o.y;
        if (nx < 0 || nx >= width || ny < 0 || ny >= height) {
            continue;
        }
        const double d = (at(nx, ny) - at(x, y)) * inverse;
        const double spatial = elementaryExp(-(o.x * o.x + o.y * o.y) / (2.0 * sigma * sigma));
        const double w = elementaryExp(-d * d) * spatial;
        sum += w;
        acc += w * (at(nx, ny) - at(x, y));
    }
    return sum == 0.0 ? 0.0 : at(x, y) + acc / sum;
}

std::unique_ptr<DiscreteImage> plainPass(const DiscreteImage& from, double threshold,
                                         double sigma) {
    auto to = from.clone();
    for (int x = 0; x < from.width(); ++x) {
        for (int y = 0; y < from.height(); ++y) {
            const auto value = [&](int channel) {
                return toInt(plainValue(
                    [&](int nx, int ny) {
                        return static_cast<double>(from.getChannel(channel, nx, ny));
                    },
                    from.width(), from.height(), x, y, threshold, sigma));
            };
            to->setRgb(x, y, value(0), value(1), value(2));
        }
    }
    return to;
}

std::unique_ptr<RgbDiscreteImage> noiseImage(int width, int height, unsigned seed, int from,
                                             int to) {
    auto image = std::make_unique<RgbDiscreteImage>(width, height);
    Noise noise(seed);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image->setRgb(x, y, noise.integer(from, to), noise.integer(from, to),
                          noise.integer(from, to));
        }
    }
    return image;
}

std::vector<int>& reports() {
    static std::vector<int> values;
    return values;
}

void ORV_PROGRESS_CALL note(int value) {
    reports().push_back(value);
}

std::vector<int> reportsOf(SusanRestorationOperator& op, const DiscreteImage& image) {
    const test::ProgressRange range(0, 100);
    reports().clear();
    progressWindow().callback = note;
    op.apply(image, nullptr);
    return reports();
}

TEST(SusanRestorationOperator, KeepsConstantPicturesAtEveryGreyLevelAndThreshold) {
    for (const double threshold : {1e-3, 0.7, 20.0, 1e6}) {
        for (int level = 0; level < 256; level += level < 8 || level > 246 ? 1 : 17) {
            const auto image = noiseImage(11, 9, 1, level, level);

            const auto result =
                SusanRestorationOperator(2, threshold, 1.3).apply(*image, nullptr);

            EXPECT_TRUE(sameSamples(*result, *image)) << level << " at " << threshold;
        }
    }
}

TEST(SusanRestorationOperator, GivesTheFormulaByteForByte) {
    struct Size {
        int width;
        int height;
    };
    for (const Size s :
         {Size{1, 1}, Size{2, 3}, Size{6, 20}, Size{7, 7}, Size{8, 7}, Size{21, 6},
          Size{40, 23}, Size{131, 17}, Size{346, 9}, Size{348, 8}, Size{701, 7}}) {
        for (const double threshold : {0.3, 1.0, 4.5, 20.0, 90.0, 1e5}) {
            for (const double sigma : {0.3, 0.8, 2.0, 50.0}) {
                SCOPED_TRACE(std::to_string(s.width) + " x " + std::to_string(s.height) +
                             ", threshold " + std::to_string(threshold) + ", sigma " +
                             std::to_string(sigma));
                const auto image = photoImage(s.width, s.height, 7);

                const auto result =
                    SusanRestorationOperator(1, threshold, sigma).apply(*image, nullptr);

                EXPECT_TRUE(sameSamples(*result, *plainPass(*image, threshold, sigma)));
            }
        }
    }
}

TEST(SusanRestorationOperator, GivesTheFormulaOnFewGreyLevelsWhereWholeResultsAreCommon) {
    for (const int levels : {1, 2, 3, 8, 255}) {
        for (const int lowest : {0, 1, 100}) {
            const int highest = std::min(255, lowest + levels);
            const auto image = noiseImage(60, 31, 5, lowest, highest);
            for (const double threshold : {0.05, 0.2, 1.0, 10.0, 1e9}) {
                SCOPED_TRACE(std::to_string(lowest) + " to " + std::to_string(highest) +
                             ", threshold " + std::to_string(threshold));

                const auto result =
                    SusanRestorationOperator(1, threshold, 1e9).apply(*image, nullptr);

                EXPECT_TRUE(sameSamples(*result, *plainPass(*image, threshold, 1e9)));
            }
        }
    }
}

TEST(SusanRestorationOperator, GivesTheFormulaOnStripesAndSteps) {
    // Neighbours that cancel out: the exact mean is whole and the rounding decides.
    for (const int step : {1, 2, 37}) {
        RgbDiscreteImage image(50, 20);
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 50; ++x) {
                image.setRgb(x, y, std::min(255, x * step), std::min(255, y * step),
                             (x + y) % 2 * step);
            }
        }
        for (const double threshold : {0.5, 3.0, 200.0}) {
            SCOPED_TRACE(std::to_string(step) + " at " + std::to_string(threshold));

            const auto result =
                SusanRestorationOperator(1, threshold, 1.4).apply(image, nullptr);

            EXPECT_TRUE(sameSamples(*result, *plainPass(image, threshold, 1.4)));
        }
    }
}

TEST(SusanRestorationOperator, GivesTheFormulaForValuesThatAreNoScales) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const auto image = noiseImage(23, 12, 3, 0, 255);
    for (const double threshold : {0.0, -0.0, -15.0, 1e-300, 1e300, inf, nan}) {
        for (const double sigma : {0.0, -1.2, 0.05, 1e-200, 1e200, inf, nan}) {
            SCOPED_TRACE(std::to_string(threshold) + ", " + std::to_string(sigma));

            const auto result =
                SusanRestorationOperator(1, threshold, sigma).apply(*image, nullptr);

            EXPECT_TRUE(sameSamples(*result, *plainPass(*image, threshold, sigma)));
        }
    }
}

TEST(SusanRestorationOperator, GivesTheFormulaOnPhotosWithEveryInstructionSet) {
    for (const char* const name : test::kPhotoCrops) {
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage image(crop.width, crop.height, crop.bytes.data());
        const auto expected = plainPass(image, 12.0, 1.5);
        for (const KernelTarget target :
             {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
            SCOPED_TRACE(std::string(name) + " with " + nameOf(target));
            limitKernelTarget(target);

            const auto result = SusanRestorationOperator(1, 12.0, 1.5).apply(image, nullptr);

            EXPECT_TRUE(sameSamples(*result, *expected));
        }
        limitKernelTarget(KernelTarget::Avx512);
    }
}

TEST(SusanRestorationOperator, CornersUseTheEntriesInsideThePicture) {
    RgbDiscreteImage image(2, 1);
    image.setValue(0, 0, 100);
    image.setValue(1, 0, 140);

    const auto result = SusanRestorationOperator(1, 20.0, 1.0).apply(image, nullptr);

    // The one neighbour is the whole mean, whatever its weight.
    EXPECT_EQ(result->red(0, 0), 140);
    EXPECT_EQ(result->red(1, 0), 100);
}

TEST(SusanRestorationOperator, NoPassesGiveACloneAndNoReport) {
    const auto image = photoImage(9, 8, 1);
    for (const int iterations : {0, -3}) {
        SusanRestorationOperator op(iterations, 20.0, 1.0);

        EXPECT_TRUE(sameSamples(*op.apply(*image, nullptr), *image));
        EXPECT_TRUE(reportsOf(op, *image).empty());
    }
}

TEST(SusanRestorationOperator, APassFeedsTheNext) {
    const auto image = photoImage(30, 20, 4);

    const auto result = SusanRestorationOperator(3, 15.0, 1.5).apply(*image, nullptr);

    const auto once = plainPass(*image, 15.0, 1.5);
    const auto twice = plainPass(*once, 15.0, 1.5);
    EXPECT_TRUE(sameSamples(*result, *plainPass(*twice, 15.0, 1.5)));
    EXPECT_FALSE(sameSamples(*result, *twice));
}

TEST(SusanRestorationOperator, FillsATargetAndLeavesTheSource) {
    const auto image = photoImage(12, 9, 4);
    const auto before = image->clone();
    auto target = std::make_unique<RgbDiscreteImage>(12, 9);
    const DiscreteImage* const given = target.get();

    const auto result = SusanRestorationOperator(2, 15.0, 1.5).apply(*image, std::move(target));

    EXPECT_EQ(result.get(), given);
    EXPECT_TRUE(
        sameSamples(*result, *SusanRestorationOperator(2, 15.0, 1.5).apply(*image, nullptr)));
    EXPECT_TRUE(sameSamples(*image, *before));
}

TEST(SusanRestorationOperator, ReportsThePassAndThenItsColumns) {
    const auto image = photoImage(4, 9, 1);
    SusanRestorationOperator once(1, 20.0, 1.0);
    SusanRestorationOperator thrice(3, 20.0, 1.0);

    EXPECT_EQ(reportsOf(once, *image), (std::vector<int>{0, 0, 25, 50, 75}));
    // 100 x / 12 + 100 i / 3, each term truncated.
    EXPECT_EQ(reportsOf(thrice, *image),
              (std::vector<int>{0, 0, 8, 16, 25, 33, 33, 41, 49, 58, 66, 66, 74, 82, 91}));
    // A second call reports the same values: the window plays no part.
    EXPECT_EQ(reportsOf(once, *image), (std::vector<int>{0, 0, 25, 50, 75}));
}

TEST(SusanRestorationOperator, ReportsOneValueAColumnOnWideAndOnHighPictures) {
    SusanRestorationOperator op(2, 20.0, 1.0);

    EXPECT_EQ(reportsOf(op, *photoImage(300, 5, 1)).size(), 602U);
    EXPECT_EQ(reportsOf(op, *photoImage(5, 300, 1)).size(), 12U);
    EXPECT_EQ(reportsOf(op, SampleImage(7, 3, 3)), reportsOf(op, *photoImage(7, 30, 1)));
}

TEST(SusanRestorationOperator, GreyPicturesReportThePassAlone) {
    SusanRestorationOperator op(4, 20.0, 1.0);

    EXPECT_EQ(reportsOf(op, SampleImage(9, 8, 1)), (std::vector<int>{0, 25, 50, 75}));
}

TEST(SusanRestorationOperator, GreyPicturesOfAnyDepthGiveTheFormula) {
    for (const int highest : {1, 255, 65535}) {
        SampleImage image(33, 20, 1, highest > 255 ? 2 : 1);
        Noise noise(8);
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 33; ++x) {
                image.setSample(x, y, 0, noise.integer(0, highest));
            }
        }
        const double threshold = highest / 8.0;

        const auto result = SusanRestorationOperator(1, threshold, 1.5).apply(image, nullptr);

        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 33; ++x) {
                const int expected = toInt(plainValue(
                    [&](int nx, int ny) { return static_cast<double>(image.value(nx, ny)); },
                    33, 20, x, y, threshold, 1.5));
                // A grey sample of a byte is stored as its low byte, and so is a wide one here.
                EXPECT_EQ(result->value(x, y), expected) << x << ", " << y;
            }
        }
    }
}

TEST(SusanRestorationOperator, ColourPicturesThatAreNotPackedGiveTheFormula) {
    const auto packed = photoImage(26, 17, 2);
    SampleImage image(26, 17, 3);
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 26; ++x) {
            image.setRgb(x, y, packed->red(x, y), packed->green(x, y), packed->blue(x, y));
        }
    }
    SusanRestorationOperator op(1, 15.0, 1.2);

    EXPECT_TRUE(sameSamples(*op.apply(image, nullptr), *op.apply(*packed, nullptr)));
}

TEST(SusanRestorationOperator, OtherCountsOfChannelsStayAsTheyAre) {
    SampleImage image(9, 9, 2);
    image.setSample(4, 4, 0, 200);

    const auto result = SusanRestorationOperator(2, 15.0, 1.2).apply(image, nullptr);

    EXPECT_TRUE(sameSamples(*result, image));
}

TEST(SusanRestorationOperator, AMaskAndATransformAreIgnored) {
    const auto image = photoImage(20, 15, 2);
    const RgbDiscreteImage mask(20, 15);
    SusanRestorationOperator op(1, 15.0, 1.2);
    const auto expected = op.apply(*image, nullptr);

    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *image, nullptr), *expected));
    EXPECT_TRUE(sameSamples(*op.applyWithTransform(nullptr, *image, nullptr), *expected));
}

TEST(SusanRestorationOperator, TheSpatialWeightsFallWithTheSquaredDistance) {
    const SusanRestorationOperator op(1, 20.0, 1.5);

    EXPECT_EQ(op.maskSize(), 36);
    EXPECT_EQ(op.maskX(0), -3);
    EXPECT_EQ(op.maskY(0), -1);
    EXPECT_EQ(op.maskX(35), 3);
    EXPECT_EQ(op.maskY(35), 1);
    EXPECT_EQ(op.maskWeight(0), elementaryExp(-10.0 / 4.5));
    EXPECT_EQ(op.maskWeight(17), elementaryExp(-1.0 / 4.5));
}

TEST(SusanRestorationOperator, APlaneOfWholeLevelsTruncatesToThePicture) {
    for (const double threshold : {0.5, 8.0, 25.0, 300.0}) {
        const auto image = photoImage(41, 29, 6);
        const FloatImage3 planes(*image);
        const SusanRestorationOperator op(1, threshold, 1.4);

        const auto result = op.runPlanes(planes, nullptr);

        RgbDiscreteImage truncated(41, 29);
        truncated.setFromFloat3(*result);
        EXPECT_TRUE(sameSamples(truncated, *plainPass(*image, threshold, 1.4))) << threshold;
    }
}

TEST(SusanRestorationOperator, PlanesGiveTheFormulaRoundedTowardZero) {
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        limitKernelTarget(target);
        const FloatImage plane = test::noisePlane(37, 25, 3, -4.0, 255.0);

        const auto result = SusanRestorationOperator(1, 18.0, 1.1).runPlane(plane);

        for (int x = 0; x < 37; ++x) {
            for (int y = 0; y < 25; ++y) {
                const double v = plainValue(
                    [&](int nx, int ny) { return static_cast<double>(plane.row(nx)[ny]); }, 37,
                    25, x, y, 18.0, 1.1);
                float expected = static_cast<float>(v);
                if (std::fabs(expected) > std::fabs(v)) {
                    expected = std::nextafter(expected, 0.0f);
                }
                EXPECT_EQ(result->row(x)[y], expected) << x << ", " << y;
            }
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(SusanRestorationOperator, LongColumnsGiveTheFormulaAcrossTheKernelsStrips) {
    for (const int height : {517, 518, 519, 1100}) {
        const FloatImage plane = test::noisePlane(8, height, 3);

        const auto result = SusanRestorationOperator(1, 18.0, 1.1).runPlane(plane);

        int wrong = 0;
        for (int y = 0; y < height; ++y) {
            const double v = plainValue(
                [&](int nx, int ny) { return static_cast<double>(plane.row(nx)[ny]); }, 8,
                height, 3, y, 18.0, 1.1);
            wrong += std::fabs(result->row(3)[y] - v) > 1e-4 ? 1 : 0;
        }
        EXPECT_EQ(wrong, 0) << height;
    }
}

TEST(SusanRestorationOperator, PlanesGoThroughThePassesWithoutTruncation) {
    const FloatImage plane = test::noisePlane(30, 22, 3);
    const SusanRestorationOperator once(1, 18.0, 1.1);

    const auto thrice = SusanRestorationOperator(3, 18.0, 1.1).runPlane(plane);

    const auto first = once.runPlane(plane);
    const auto second = once.runPlane(*first);
    EXPECT_TRUE(sameBits(*thrice, *once.runPlane(*second)));
    EXPECT_TRUE(sameBits(*SusanRestorationOperator(0, 18.0, 1.1).runPlane(plane), plane));
}

TEST(SusanRestorationOperator, ThreePlanesRunOneByOneIntoATarget) {
    const FloatImage3 planes = test::noisePlanes(19, 23, 5);
    const SusanRestorationOperator op(2, 18.0, 1.1);

    for (const int width : {0, 19, 5}) {
        auto target = width == 0 ? nullptr : std::make_unique<FloatImage3>(width, 23);
        const auto result = op.runPlanes(planes, std::move(target));

        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(sameBits(result->plane(i), *op.runPlane(planes.plane(i))));
        }
    }
}

TEST(Quirk, SusanMissingNeighbour) {
    // One bright pixel in the corner that the mask lacks, and one in the corner opposite.
    RgbDiscreteImage image(7, 7);
    image.fill(100);
    image.setRed(5, 1, 140);
    image.setGreen(1, 5, 140);

    const auto result = SusanRestorationOperator(1, 1000.0, 1000.0).apply(image, nullptr);

    EXPECT_EQ(result->red(3, 3), 100);
    EXPECT_EQ(result->green(3, 3), 101);
    EXPECT_LT(SusanRestorationOperator(1, 20.0, 1.0).maskY(28), -1000);
    EXPECT_EQ(SusanRestorationOperator(1, 20.0, 1.0).maskY(29), -1);
}

TEST(Quirk, SusanBlack) {
    // No neighbour is like this pixel: all weights underflow, and it is written as 0.
    RgbDiscreteImage image(9, 9);
    image.fill(10);
    image.setRed(4, 4, 250);

    const auto narrow = SusanRestorationOperator(1, 5.0, 2.0).apply(image, nullptr);
    const auto tiny = SusanRestorationOperator(1, 1e-5, 2.0).apply(image, nullptr);

    EXPECT_EQ(narrow->red(4, 4), 0);
    EXPECT_EQ(narrow->green(4, 4), 10);
    EXPECT_EQ(tiny->red(4, 4), 0);

    FloatImage plane(9, 9, 10.0f);
    plane.row(4)[4] = 250.0f;
    plane.row(0)[0] = 250.0f;
    const auto smoothed = SusanRestorationOperator(1, 5.0, 2.0).runPlane(plane);
    EXPECT_EQ(smoothed->row(4)[4], 0.0f);
    EXPECT_EQ(smoothed->row(0)[0], 0.0f);
}

}  // namespace
}  // namespace orv
