#include "methods/working_planes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "support/gaussian_noise.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisyPlanes;
using test::sameBits;

double deviationFrom(const FloatImage& plane, double mean) {
    double sum = 0.0;
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        sum += (plane.data()[i] - mean) * (plane.data()[i] - mean);
    }
    return std::sqrt(sum / static_cast<double>(plane.sampleCount()));
}

TEST(WorkingPlanes, TurningToOpponentAndBackIsExactButForRounding) {
    const Planes planes = noisyPlanes(31, 17, 3, 0.0, 255.0);
    Planes turned = test::copyOf(planes);

    turnToOpponent(turned);
    turnToRgb(turned);

    for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < planes[c]->sampleCount(); ++i) {
            // A few roundings of values up to 255.
            ASSERT_NEAR(turned[c]->data()[i], planes[c]->data()[i], 1e-4);
        }
    }
}

TEST(WorkingPlanes, GreyHasNoColour) {
    Planes planes = noisyPlanes(9, 5, 1);
    planes.push_back(planes[0]->clone());
    planes.push_back(planes[0]->clone());
    const auto grey = planes[0]->clone();

    turnToOpponent(planes);

    for (std::size_t i = 0; i < grey->sampleCount(); ++i) {
        EXPECT_NEAR(planes[0]->data()[i], grey->data()[i], 1e-4);
        EXPECT_EQ(planes[1]->data()[i], 0.0f);
        EXPECT_NEAR(planes[2]->data()[i], 0.0f, 1e-4);
    }
}

TEST(WorkingPlanes, IndependentNoiseHasOneStrengthInAllOpponentPlanes) {
    Planes planes;
    for (unsigned c = 0; c < 3; ++c) {
        planes.push_back(std::make_unique<FloatImage>(200, 200, 100.0f));
        test::addNoise(*planes.back(), 9.0, 40 + c);
    }

    turnToOpponent(planes);

    const double expected = 9.0 / std::sqrt(3.0);
    EXPECT_NEAR(deviationFrom(*planes[0], 100.0), expected, 0.1);
    EXPECT_NEAR(deviationFrom(*planes[1], 0.0), expected, 0.1);
    EXPECT_NEAR(deviationFrom(*planes[2], 0.0), expected, 0.1);
}

TEST(WorkingPlanes, AFrameIsMirroredAndComesOffAgain) {
    FloatImage plane(3, 2);
    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 2; ++y) {
            plane.row(x)[y] = static_cast<float>(10 * x + y);
        }
    }

    const auto wide = framed(plane, 2, 1, 4, 3);

    ASSERT_EQ(wide->width(), 9);
    ASSERT_EQ(wide->height(), 6);
    const int columns[] = {1, 0, 0, 1, 2, 2, 1, 0, 0};
    const int rows[] = {0, 0, 1, 1, 0, 0};
    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 6; ++y) {
            EXPECT_EQ(wide->row(x)[y], static_cast<float>(10 * columns[x] + rows[y]));
        }
    }
    EXPECT_TRUE(sameBits(*cropped(*wide, 2, 1, 3, 2), plane));
}

}  // namespace
}  // namespace orv
