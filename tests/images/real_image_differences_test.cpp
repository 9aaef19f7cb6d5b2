#include "images/real_image_differences.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/plane_support.h"

namespace orv {
namespace {

/// I(x, y) for x, y from 0 to 2: 1 2 4 / 7 11 16 / 22 29 37 down the columns.
RealImage ninePlane() {
    RealImage plane(3, 3);
    const double samples[] = {1, 2, 4, 7, 11, 16, 22, 29, 37};
    for (int i = 0; i < 9; ++i) {
        plane.data()[i] = samples[i];
    }
    return plane;
}

TEST(RealImageDifferences, FirstDifferencesReadTheirNeighbours) {
    const RealImage I = ninePlane();

    EXPECT_EQ(centralX(I, 1, 1), 13.5);
    EXPECT_EQ(centralY(I, 1, 1), 4.5);
    EXPECT_EQ(forwardX(I, 1, 1), 18.0);
    EXPECT_EQ(forwardY(I, 1, 1), 5.0);
    EXPECT_EQ(backwardX(I, 1, 1), 9.0);
    EXPECT_EQ(backwardY(I, 1, 1), 4.0);
}

TEST(RealImageDifferences, SecondDifferencesReadTheirNeighbours) {
    const RealImage I = ninePlane();

    EXPECT_EQ(secondXX(I, 1, 1), 29.0 - 22.0 + 2.0);
    EXPECT_EQ(secondYY(I, 1, 1), 16.0 - 22.0 + 7.0);
    EXPECT_EQ(secondXY(I, 1, 1), ((1.0 + 37.0) - (22.0 + 4.0)) / 4.0);
}

TEST(RealImageDifferences, DirectionalSecondDerivativesFollowTheGradient) {
    const RealImage I = ninePlane();
    const double fx = 13.5, fy = 4.5, fxx = 9.0, fyy = 1.0, fxy = 3.0;
    const double size = fx * fx + fy * fy + 0.00000001;

    EXPECT_EQ(secondAlongGradient(I, 1, 1),
              (fx * fx * fxx + 2.0 * fx * fy * fxy + fy * fy * fyy) / size);
    EXPECT_EQ(secondAcrossGradient(I, 1, 1),
              (fy * fy * fxx - 2.0 * fx * fy * fxy + fx * fx * fyy) / size);
}

TEST(RealImageDifferences, AFlatPlaneHasNoDirectionalCurvature) {
    const RealImage I(3, 3, 40.0);

    EXPECT_EQ(secondAlongGradient(I, 1, 1), 0.0);
    EXPECT_EQ(secondAcrossGradient(I, 1, 1), 0.0);
    EXPECT_EQ(gradientNormMinmod(I, 1, 1), std::sqrt(0.000000000001));
}

TEST(RealImageDifferences, MinmodTakesTheSmallerOfTwoOfOneSign) {
    EXPECT_EQ(minmod(2.0, 3.0), 2.0);
    EXPECT_EQ(minmod(-5.0, -3.0), -3.0);
    EXPECT_EQ(minmod(-5.0, 3.0), 0.0);
    EXPECT_EQ(minmod(0.0, 3.0), 0.0);
}

TEST(RealImageDifferences, TheLimiterSeesBackwardBeforeForward) {
    const RealImage I = ninePlane();

    const double backward =
        gradientNormLimited(I, 1, 1, [](double b, double /*f*/) { return b; });
    const double forward =
        gradientNormLimited(I, 1, 1, [](double /*b*/, double f) { return f; });

    EXPECT_EQ(backward, std::sqrt(9.0 * 9.0 + 4.0 * 4.0 + 0.000000000001));
    EXPECT_EQ(forward, std::sqrt(18.0 * 18.0 + 5.0 * 5.0 + 0.000000000001));
    EXPECT_EQ(gradientNormMinmod(I, 1, 1), backward);
}

}  // namespace
}  // namespace orv
