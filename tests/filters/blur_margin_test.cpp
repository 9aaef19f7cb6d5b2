#include "filters/blur_margin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "filters/real_recursive_2d_blur_operator.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;

TEST(BlurMargin, IsSixSigmaAndTheStartOfALine) {
    EXPECT_EQ(blurMargin(0.5), 6);
    EXPECT_EQ(blurMargin(2.1), 16);
    EXPECT_EQ(blurMargin(8.0), 51);
    EXPECT_EQ(blurMargin(256.0), 1539);
}

TEST(BlurMargin, MirrorsAndStartsWithThreeEqualSamples) {
    FloatImage plane(4, 2);
    for (int x = 0; x < 4; ++x) {
        for (int y = 0; y < 2; ++y) {
            plane.row(x)[y] = static_cast<float>(10 * x + y);
        }
    }
    // Columns 3 2 1 0 | 0 1 2 3 | 3 2 1 0 and rows 1 1 0 0 | 0 1 | 1 0 0 1 without the starts.
    const int columns[] = {1, 1, 1, 0, 0, 1, 2, 3, 3, 2, 1, 0};
    const int rows[] = {1, 1, 1, 0, 0, 1, 1, 0, 0, 1};

    const auto extended = withMirroredMargin(plane, 4);

    ASSERT_EQ(extended->width(), 12);
    ASSERT_EQ(extended->height(), 10);
    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 10; ++y) {
            EXPECT_EQ(extended->row(x)[y], 10 * columns[x] + rows[y]) << x << " " << y;
        }
    }
}

TEST(BlurMargin, GoesOnMirroringAPlaneOfOneSample) {
    const FloatImage plane(1, 1, 77.0F);

    const auto extended = withMirroredMargin(plane, 6);

    for (std::size_t i = 0; i < extended->sampleCount(); ++i) {
        EXPECT_EQ(extended->data()[i], 77.0);
    }
}

double largestDifference(const FloatImage& plane, double sigma, int margin, int wider) {
    RealRecursive2dBlurOperator blur(sigma);
    const auto narrow = withMirroredMargin(plane, margin);
    const auto wide = withMirroredMargin(plane, wider);
    blur.blurInPlace(*narrow);
    blur.blurInPlace(*wide);
    double largest = 0.0;
    for (int x = 0; x < plane.width(); ++x) {
        for (int y = 0; y < plane.height(); ++y) {
            largest = std::max(largest, std::abs(narrow->row(x + margin)[y + margin] -
                                                 wide->row(x + wider)[y + wider]));
        }
    }
    return largest;
}

TEST(BlurMargin, KeepsTheStartOfTheLinesOutOfThePlane) {
    FloatImage checkers(140, 130);
    for (int x = 0; x < 140; ++x) {
        for (int y = 0; y < 130; ++y) {
            checkers.row(x)[y] = (x / 20 + y / 20) % 2 == 1 ? 255.0F : 0.0F;
        }
    }
    for (const double sigma : {0.5, 2.0, 8.0, 16.0, 24.0}) {
        const int margin = blurMargin(sigma);

        EXPECT_LT(largestDifference(checkers, sigma, margin, 5 * margin), 0.2) << sigma;
        EXPECT_LT(largestDifference(noisePlane(140, 130, 4), sigma, margin, 5 * margin), 0.2)
            << sigma;
    }
    EXPECT_GT(largestDifference(checkers, 8.0, blurMargin(8.0) / 3, 5 * blurMargin(8.0)), 0.2);
}

}  // namespace
}  // namespace orv
