#include "wavelets/shrinkage/brownian_shrink.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "images/real_image.h"
#include "support/plain_shrinkage.h"
#include "support/plane_support.h"

namespace orv {
namespace {

RealImage coefficientsOf(int width, int height, unsigned seed) {
    test::Noise noise(seed);
    RealImage plane(width, height);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double v = noise.between(-2.0, 2.0);
        plane.data()[i] = v * v * v * 3.0;
    }
    return plane;
}

TEST(CriticalValues, HaveTheRowOfASignificanceLevel) {
    EXPECT_EQ(criticalRow(0.5f), 7);
    EXPECT_EQ(criticalRow(1.0f), 0);
    EXPECT_EQ(criticalRow(0.999f), 0);
    EXPECT_EQ(criticalRow(0.9985f), 1);
    EXPECT_EQ(criticalRow(0.001f), 16);
    EXPECT_EQ(criticalRow(0.0005f), 16);
    EXPECT_EQ(tableAlpha(7), 0.5f);
    EXPECT_EQ(tableAlpha(0), 0.999f);
    EXPECT_EQ(tableAlpha(16), 0.001f);
}

TEST(CriticalValues, StandInColumnsOfTheBandSide) {
    EXPECT_EQ(criticalValue(0, 0), 0.1733f);
    EXPECT_EQ(criticalValue(7, 0), 0.9333f);
    EXPECT_EQ(criticalValue(7, 7), 1.6401f);
    EXPECT_EQ(criticalValue(12, 3), 2.1915f);
    EXPECT_EQ(criticalValue(16, 7), 3.1581f);
}

// In units of the last published digit, a slip in any of the 136 values changes two of the sums.
TEST(CriticalValues, HaveTheSumsOfThePublishedTable) {
    constexpr int kRowSums[] = {55205,  64392,  74887,  81556,  90874,  98574,
                                105827, 113233, 121292, 130528, 142315, 160268,
                                176388, 191231, 209608, 222625, 252182};
    constexpr int kColumnSums[] = {233892, 254368, 273685, 288861,
                                   299109, 308717, 314545, 317808};
    int columnSums[8] = {};
    for (int row = 0; row < 17; ++row) {
        int rowSum = 0;
        for (int column = 0; column < 8; ++column) {
            const int units = static_cast<int>(std::lround(1e4f * criticalValue(row, column)));
            rowSum += units;
            columnSums[column] += units;
        }
        EXPECT_EQ(rowSum, kRowSums[row]) << row;
    }
    for (int column = 0; column < 8; ++column) {
        EXPECT_EQ(columnSums[column], kColumnSums[column]) << column;
    }
}

TEST(Quirk, CriticalColumn) {
    EXPECT_EQ(criticalValue(7, -1), criticalValue(6, 7));
    EXPECT_EQ(criticalValue(7, -2), criticalValue(6, 6));
    EXPECT_EQ(criticalValue(7, -3), criticalValue(6, 5));
    EXPECT_EQ(criticalValue(0, -1), 0.001f);
    EXPECT_EQ(criticalValue(0, -3), 0.01f);
}

TEST(BrownianShrink, ShrinksEveryBandByItsPlainThreshold) {
    RealImage plane = coefficientsOf(64, 64, 1);
    RealImage plain(plane);
    testing::internal::CaptureStdout();
    BrownianShrink2D(plane, 64, 64, 3, 0.5f, /*verbose=*/false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Alpha from table is 0.5\n");

    test::plainRule(plain, 2, 3, {1.4622f, 1.3582f, 1.1962f});

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        ASSERT_EQ(plane.data()[i], plain.data()[i]) << i;
    }
}

TEST(BrownianShrink, TakesTheColumnFromTheBandsWidthOnPlanesThatAreNotSquare) {
    RealImage plane = coefficientsOf(64, 16, 2);
    RealImage plain(plane);
    testing::internal::CaptureStdout();
    BrownianShrink2D(plane, 16, 64, 2, 0.2f, /*verbose=*/false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARNING: Rows != Cols.  Results may not be meaningful!\n"
              "Alpha from table is 0.2\n");

    test::plainRule(plain, 2, 2, {1.8068f, 1.7102f});

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        ASSERT_EQ(plane.data()[i], plain.data()[i]) << i;
    }
}

TEST(BrownianShrink, ReadsInFrontOfItsRowForBandsOfSideTwoAndOne) {
    RealImage plane = coefficientsOf(4, 4, 3);
    RealImage plain(plane);
    testing::internal::CaptureStdout();
    BrownianShrink2D(plane, 4, 4, 2, 0.5f, /*verbose=*/true);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_NE(text.find("Critical Point for level 1 = 1.5533\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Critical Point for level 2 = 1.5309\n"), std::string::npos) << text;

    test::plainRule(plain, 2, 2, {1.5533f, 1.5309f});

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        ASSERT_EQ(plane.data()[i], plain.data()[i]) << i;
    }
}

TEST(BrownianShrink, PrintsEveryStepWhenVerbose) {
    RealImage plane(8, 8, 2.0);

    testing::internal::CaptureStdout();
    BrownianShrink2D(plane, 8, 8, 1, 0.5f, /*verbose=*/true);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Brownian Process Shrinkage, 2D\n"
              "Noise estimate = 2.94362\n"
              "Alpha from table is 0.5\n"
              "Critical Point for level 1 = 0.9333\n"
              "Level 1, detail 0: threshold = 0.679435, tossed 16 coefs\n"
              "Level 1, detail 1: threshold = 0.679435, tossed 16 coefs\n"
              "Level 1, detail 2: threshold = 0.679435, tossed 16 coefs\n");
}

// Bands wider than 512 take the value for 512.
TEST(BrownianShrink, TakesTheLastColumnForWideBands) {
    RealImage plane(2048, 4);
    testing::internal::CaptureStdout();
    BrownianShrink2D(plane, 4, 2048, 1, 0.5f, /*verbose=*/true);

    EXPECT_NE(
        testing::internal::GetCapturedStdout().find("Critical Point for level 1 = 1.6401\n"),
        std::string::npos);
}

}  // namespace
}  // namespace orv
