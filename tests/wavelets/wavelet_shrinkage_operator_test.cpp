#include "wavelets/wavelet_shrinkage_operator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "images/real_image.h"
#include "support/plain_shrinkage.h"
#include "support/plane_support.h"
#include "wavelets/mirror_extension.h"
#include "wavelets/transform/wavelet_filter_banks.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {
namespace {

/// Shading, an edge and noise.
RealImage pictureOf(int width, int height, unsigned seed) {
    test::Noise noise(seed);
    RealImage plane(width, height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] =
                40.0 + 0.5 * x + (3 * x > 2 * y ? 90.0 : 0.0) + noise.between(-12.0, 12.0);
        }
    }
    return plane;
}

struct Filters {
    WaveletFilter analysisLow[kWaveletCount];
    WaveletFilter analysisHigh[kWaveletCount];
    WaveletFilter synthesisLow[kWaveletCount];
    WaveletFilter synthesisHigh[kWaveletCount];
};

// Critical values of significance level 0.5 by band side 4 to 512.
constexpr float kHalf[] = {0.9333f, 1.1962f, 1.3582f, 1.4622f,
                           1.5291f, 1.5850f, 1.6192f, 1.6401f};

/// The operator word by word on a plane of zeros of width x height with the source in a corner.
std::unique_ptr<RealImage> plainApply(const RealImage& source, int width, int height, int rule,
                                      int levels, int wavelet) {
    auto filters = std::make_unique<Filters>();
    InitWaveletFilters(filters->analysisLow, filters->analysisHigh, filters->synthesisLow,
                       filters->synthesisHigh);
    RealImage padded(width, height);
    for (int x = 0; x < source.width(); ++x) {
        std::copy_n(source.row(x), source.height(), padded.row(x));
    }
    RealImage coefficients(width, height);
    FwtImage(padded, coefficients, height, width, levels, filters->analysisLow[wavelet],
             filters->analysisHigh[wavelet]);
    std::vector<double> criticals;
    for (int level = 1; level <= levels; ++level) {
        const int side = std::min(width / power2(level), 512);
        criticals.push_back(side < 4 ? 1.5533f : kHalf[floorLog2(side) - 2]);
    }
    test::plainRule(coefficients, rule, levels, criticals);
    IwtImage(coefficients, padded, height, width, levels, filters->synthesisLow[wavelet],
             filters->synthesisHigh[wavelet]);
    auto result = std::make_unique<RealImage>(source.width(), source.height());
    for (int x = 0; x < source.width(); ++x) {
        std::copy_n(padded.row(x), source.height(), result->row(x));
    }
    return result;
}

void expectSameSamples(const RealImage& a, const RealImage& b) {
    ASSERT_EQ(a.width(), b.width());
    ASSERT_EQ(a.height(), b.height());
    for (int x = 0; x < a.width(); ++x) {
        for (int y = 0; y < a.height(); ++y) {
            ASSERT_EQ(a.row(x)[y], b.row(x)[y]) << x << ", " << y;
        }
    }
}

std::unique_ptr<RealImage> silentApply(WaveletShrinkageOperator& op, const RealImage& source,
                                       std::unique_ptr<RealImage> target = nullptr) {
    testing::internal::CaptureStdout();
    std::unique_ptr<RealImage> result = op.apply(source, std::move(target));
    testing::internal::GetCapturedStdout();
    return result;
}

struct Case {
    int width;
    int height;
    int workWidth;
    int workHeight;
    int minSide;
};

// Planes that are padded, that are not, and that some pass could not halve.
constexpr Case kCases[] = {{64, 64, 64, 64, 64}, {64, 32, 64, 32, 32},    {32, 64, 32, 64, 32},
                           {64, 48, 64, 48, 48}, {65, 20, 128, 128, 128}, {50, 33, 64, 64, 64},
                           {33, 50, 64, 64, 64}, {64, 37, 64, 37, 37},    {30, 64, 30, 64, 30}};

TEST(WaveletShrinkageOperator, IsThePlainMethodForEveryRuleAndWavelet) {
    constexpr int kLongest[] = {6, 2, 5, 9, 13, 9};
    for (const Case& c : kCases) {
        for (int rule = 0; rule < 3; ++rule) {
            for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
                SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << ", rule "
                                                << rule << ", wavelet " << wavelet);
                const RealImage source = pictureOf(c.width, c.height, 5);
                WaveletShrinkageOperator op(rule, -1, wavelet);

                const std::unique_ptr<RealImage> result = silentApply(op, source);

                const int levels = floorLog2(c.minSide) - floorLog2(kLongest[wavelet]);
                EXPECT_EQ(op.levels(), levels);
                int workWidth = c.workWidth;
                int workHeight = c.workHeight;
                if (workWidth % power2(levels) != 0 || workHeight % power2(levels) != 0) {
                    workWidth = workHeight = std::max(workWidth, workHeight);
                }
                const std::unique_ptr<RealImage> plain =
                    plainApply(source, workWidth, workHeight, rule, levels, wavelet);
                expectSameSamples(*result, *plain);
            }
        }
    }
}

TEST(WaveletShrinkageOperator, TakesAsManyLevelsAsAskedFor) {
    const RealImage source = pictureOf(64, 48, 6);
    WaveletShrinkageOperator op(kVisuShrink, 2, 1);

    const std::unique_ptr<RealImage> result = op.apply(source, nullptr);

    EXPECT_EQ(op.levels(), 2);
    expectSameSamples(*result, *plainApply(source, 64, 48, 1, 2, 1));
}

TEST(WaveletShrinkageOperator, FillsAndReturnsTheTarget) {
    const RealImage source = pictureOf(40, 30, 7);
    WaveletShrinkageOperator op(kSureShrink, -1, 3);
    auto target = std::make_unique<RealImage>(40, 30, -1.0);
    const RealImage* const given = target.get();

    const std::unique_ptr<RealImage> result = op.apply(source, std::move(target));

    EXPECT_EQ(result.get(), given);
    expectSameSamples(*result, *op.apply(source, nullptr));
}

TEST(WaveletShrinkageOperator, PadsOnlyWhereTheLongerSideIsNoPowerOfTwo) {
    constexpr struct {
        int width;
        int height;
        int maxLevels;  // floorLog2(shorter working side) - 1 for Haar
    } kSizes[] = {{512, 512, 8}, {513, 100, 9}, {512, 300, 7}};
    for (const auto& size : kSizes) {
        SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
        WaveletShrinkageOperator op(kVisuShrink, -1, 1);

        op.apply(pictureOf(size.width, size.height, 8), nullptr);

        EXPECT_EQ(op.maxLevels(), size.maxLevels);
        EXPECT_EQ(op.levels(), size.maxLevels);
    }
}

TEST(WaveletShrinkageOperator, PadsToTheNextPowerOfTwo) {
    EXPECT_EQ(WaveletShrinkageOperator::workingSide(1), 1);
    EXPECT_EQ(WaveletShrinkageOperator::workingSide(3), 4);
    EXPECT_EQ(WaveletShrinkageOperator::workingSide(512), 512);
    EXPECT_EQ(WaveletShrinkageOperator::workingSide(513), 1024);
}

TEST(WaveletShrinkageOperator, LimitsTheLevelsByTheLongestFilter) {
    EXPECT_EQ(WaveletShrinkageOperator(0, -1, 4).levelLimit(256), 5);
    EXPECT_EQ(WaveletShrinkageOperator(0, -1, 1).levelLimit(256), 7);
    EXPECT_EQ(WaveletShrinkageOperator(0, -1, 0).levelLimit(256), 6);
    EXPECT_EQ(WaveletShrinkageOperator(0, -1, 1).levelLimit(1), -1);
}

TEST(WaveletShrinkageOperator, TellsTooManyLevelsOnceForAnOperator) {
    const RealImage source = pictureOf(32, 32, 9);
    WaveletShrinkageOperator op(kSureShrink, 9, 3);

    testing::internal::CaptureStderr();
    const std::unique_ptr<RealImage> first = op.apply(source, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Requested too many levels, setting levels to 2\n");

    testing::internal::CaptureStderr();
    const std::unique_ptr<RealImage> second = op.apply(source, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(op.levels(), 2);
    expectSameSamples(*first, *second);
}

TEST(WaveletShrinkageOperator, TakesTheLimitSilentlyForNegativeLevels) {
    WaveletShrinkageOperator op(kSureShrink, -1, 3);

    testing::internal::CaptureStderr();
    op.apply(pictureOf(32, 32, 9), nullptr);

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(op.levels(), 2);
}

TEST(WaveletShrinkageOperator, GivesTheSourceWhereNoLevelIsPossible) {
    const RealImage source = pictureOf(6, 5, 10);
    WaveletShrinkageOperator op(kBrownianShrink, -1, 4);

    testing::internal::CaptureStdout();
    const std::unique_ptr<RealImage> result = op.apply(source, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Alpha from table is 0.5\n");
    expectSameSamples(*result, source);
    EXPECT_EQ(op.levels(), 0);

    WaveletShrinkageOperator narrow(kBrownianShrink, -1, 4);
    testing::internal::CaptureStdout();
    const std::unique_ptr<RealImage> strip =
        narrow.apply(pictureOf(16, 1, 2), std::make_unique<RealImage>(16, 1, -1.0));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARNING: Rows != Cols.  Results may not be meaningful!\n"
              "Alpha from table is 0.5\n");
    expectSameSamples(*strip, pictureOf(16, 1, 2));
    EXPECT_EQ(narrow.levels(), -3);
}

TEST(WaveletShrinkageOperator, GivesTheSourceForZeroLevels) {
    const RealImage source = pictureOf(64, 64, 11);
    WaveletShrinkageOperator op(kSureShrink, 0, 1);
    op.setVerbose(1);

    testing::internal::CaptureStdout();
    const std::unique_ptr<RealImage> result = op.apply(source, nullptr);

    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(
        text.find("Using wavelet 1; decomposing 0 levels.\nSureShrink2D\nNoise estimate = "),
        0U)
        << text;
    expectSameSamples(*result, source);
}

TEST(WaveletShrinkageOperator, WorksOnPlanesOfOneSample) {
    for (int rule = 0; rule < 3; ++rule) {
        for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
            WaveletShrinkageOperator op(rule, -1, wavelet);
            const RealImage source(1, 1, 17.5);

            expectSameSamples(*silentApply(op, source), source);
        }
    }
}

TEST(WaveletShrinkageOperator, TellsAnUnknownAlgorithmAndLeavesTheTarget) {
    const RealImage source = pictureOf(32, 32, 12);
    WaveletShrinkageOperator op(3, -1, 1);

    testing::internal::CaptureStderr();
    const std::unique_ptr<RealImage> made = op.apply(source, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unknown denoising algorithm (3); return image copy\n");
    expectSameSamples(*made, source);

    testing::internal::CaptureStderr();
    const RealImage before(32, 32, -2.0);
    const std::unique_ptr<RealImage> given =
        op.apply(source, std::make_unique<RealImage>(before));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unknown denoising algorithm (3); return image copy\n");
    expectSameSamples(*given, before);
}

TEST(WaveletShrinkageOperator, LeavesThePlaneForAnUnknownWavelet) {
    const RealImage source = pictureOf(32, 32, 13);
    for (const int wavelet : {-1, 6, 1000000}) {
        WaveletShrinkageOperator op(kSureShrink, -1, wavelet);

        expectSameSamples(*op.apply(source, nullptr), source);
        expectSameSamples(*op.mirrored(source), source);
        const RealImage before(32, 32, -2.0);
        expectSameSamples(*op.apply(source, std::make_unique<RealImage>(before)), before);
    }
}

TEST(WaveletShrinkageOperator, PrintsWaveletAndLevelsWhenVerbose) {
    WaveletShrinkageOperator op(kVisuShrink, 1, 1);
    op.setVerbose(1);

    testing::internal::CaptureStdout();
    op.apply(RealImage(4, 4, 100.0), nullptr);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Using wavelet 1; decomposing 1 levels.\n"
              "VisuShrink2D algorithm\n"
              "Noise estimate = 0\n"
              "Level 1, detail 0: threshold = 0, tossed 4 coefs\n"
              "Level 1, detail 1: threshold = 0, tossed 4 coefs\n"
              "Level 1, detail 2: threshold = 0, tossed 4 coefs\n");
}

// Of the 8 x 8 finest diagonal details of the padded square, only those at the four corners of the
// flat picture are other than 0.
TEST(WaveletShrinkageOperator, CountsTheZerosOfAPaddedPlaneAsTossed) {
    WaveletShrinkageOperator op(kVisuShrink, 1, 1);
    op.setVerbose(1);

    testing::internal::CaptureStdout();
    op.apply(RealImage(10, 6, 100.0), nullptr);

    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "Level 1, detail 2: threshold = 0, tossed 60 coefs\n"),
              std::string::npos);
}

TEST(WaveletShrinkageOperator, IteratesOnItsOwnResult) {
    const RealImage source = pictureOf(32, 32, 14);
    WaveletShrinkageOperator op(kSureShrink, 2, 1);

    const std::unique_ptr<RealImage> twice = op.iterate(2, source, nullptr);

    expectSameSamples(*twice, *op.apply(*op.apply(source, nullptr), nullptr));
}

TEST(WaveletShrinkageOperator, MirroredIsApplyOnTheExtendedPlane) {
    constexpr struct {
        int width;
        int height;
        int extendedWidth;
        int extendedHeight;
        int wavelet;
        int levels;
    } kExtensions[] = {{50, 33, 64, 36, 3, 2}, {33, 50, 36, 64, 3, 2},
                       {64, 64, 64, 64, 1, 5}, {100, 57, 128, 64, 1, 4},
                       {40, 64, 40, 64, 4, 2}, {37, 37, 64, 40, 0, 3}};
    for (const auto& e : kExtensions) {
        for (int rule = 0; rule < 3; ++rule) {
            SCOPED_TRACE(testing::Message() << e.width << " x " << e.height << ", " << rule);
            const RealImage source = pictureOf(e.width, e.height, 15);
            WaveletShrinkageOperator op(rule, -1, e.wavelet);
            WaveletShrinkageOperator onExtended(rule, e.levels, e.wavelet);
            const std::unique_ptr<RealImage> extended =
                mirrorExtended(source, e.extendedWidth, e.extendedHeight);

            testing::internal::CaptureStdout();
            const std::unique_ptr<RealImage> result = op.mirrored(source);
            const std::unique_ptr<RealImage> whole = onExtended.apply(*extended, nullptr);
            testing::internal::GetCapturedStdout();

            EXPECT_EQ(op.levels(), e.levels);
            RealImage cropped(e.width, e.height);
            for (int x = 0; x < e.width; ++x) {
                std::copy_n(whole->row(x), e.height, cropped.row(x));
            }
            expectSameSamples(*result, cropped);
        }
    }
}

// Zeros around the picture pull its borders down and hide its noise; mirroring does neither.
TEST(WaveletShrinkageOperator, MirroredKeepsBordersAndFindsTheNoise) {
    RealImage flat(40, 40, 200.0);
    test::Noise noise(3);
    for (std::size_t i = 0; i < flat.sampleCount(); ++i) {
        flat.data()[i] += noise.between(-20.0, 20.0);
    }
    WaveletShrinkageOperator op(kVisuShrink, 2, 3);

    const std::unique_ptr<RealImage> mirrored = op.mirrored(flat);
    const std::unique_ptr<RealImage> zeroed = op.apply(flat, nullptr);

    double furthest = 0.0;
    double left = 0.0;
    for (std::size_t i = 0; i < flat.sampleCount(); ++i) {
        furthest = std::max(furthest, std::fabs(mirrored->data()[i] - 200.0));
        left = std::max(left, std::fabs(zeroed->data()[i] - 200.0));
    }
    EXPECT_LT(furthest, 12.0);
    EXPECT_GT(left, 15.0);
}

TEST(MirrorExtension, MirrorsBothEndsOfColumnsAndRows) {
    RealImage source(3, 4);
    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 4; ++y) {
            source.row(x)[y] = 10.0 * x + y;
        }
    }

    const std::unique_ptr<RealImage> extended = mirrorExtended(source, 5, 7);

    constexpr int kColumns[] = {0, 1, 2, 2, 0};
    constexpr int kRows[] = {0, 1, 2, 3, 3, 2, 0};
    for (int x = 0; x < 5; ++x) {
        for (int y = 0; y < 7; ++y) {
            EXPECT_EQ(extended->row(x)[y], 10.0 * kColumns[x] + kRows[y]) << x << ", " << y;
        }
    }
}

TEST(WaveletShrinkageOperator, OffersTheStepsThatItRuns) {
    WaveletShrinkageOperator op(kSureShrink, -1, 1);
    op.setVerbose(1);
    const RealImage plane = pictureOf(8, 8, 16);
    int box[4] = {};

    EXPECT_EQ(op.power2(5), 32);
    EXPECT_EQ(op.floorLog2(33), 5);
    EXPECT_EQ(op.alpha(), 0.5f);
    op.BoundingBox(8, 8, 1, 2, &box[0], &box[1], &box[2], &box[3]);
    EXPECT_EQ(box[0], 4);
    EXPECT_EQ(box[3], 8);
    EXPECT_EQ(op.ExtractBand(plane, 8, 8, 1, 2)->row(1)[3], plane.row(5)[7]);
    EXPECT_EQ(op.estimateNoise2D(plane, 8, 8), test::plainNoise(plane, 8, 8));
    RealImage shrunk(plane);
    testing::internal::CaptureStdout();
    op.ShrinkBand(shrunk, 8, 8, 1, 0, 1e9);
    op.VisuShrink2D(shrunk, 8, 8, 1);
    op.SureShrink2D(shrunk, 8, 8, 1);
    op.BrownianShrink2D(shrunk, 8, 8, 1, 0.9f);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_NE(text.find("tossed 16 coefs\nVisuShrink2D algorithm\n"), std::string::npos);
    EXPECT_NE(text.find("SureShrink2D\n"), std::string::npos);
    EXPECT_NE(text.find("Alpha from table is 0.9\n"), std::string::npos);
}

TEST(Quirk, SharedGradientName) {
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    WaveletShrinkageOperator(kSureShrink, -1, 1).printName(file);
    std::rewind(file);
    char text[64] = {};
    EXPECT_GT(std::fread(text, 1, sizeof text - 1, file), 0U);
    std::fclose(file);

    EXPECT_STREQ(text, "Real Gradient Operator\n");
}

}  // namespace
}  // namespace orv
