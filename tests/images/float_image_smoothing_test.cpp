#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "base/cpu_features.h"
#include "images/float_image.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;
using test::sameBits;

/// One line smoothed as the formula reads, from a copy of the whole line.
std::vector<float> smoothedLine(const std::vector<float>& line,
                                const std::vector<int>& weights) {
    const int n = static_cast<int>(line.size());
    const int reach = static_cast<int>(weights.size()) / 2;
    int sum = 0;
    for (const int weight : weights) {
        sum += std::abs(weight);
    }
    std::vector<float> out = line;
    const auto at = [&](int i) { return line[static_cast<std::size_t>(i)]; };
    for (int i = reach; i < n - reach; ++i) {
        float total = 0.0f;
        if (reach == 1) {
            total = static_cast<float>(weights[2]) * at(i + 1) +
                    static_cast<float>(weights[0]) * at(i - 1) +
                    static_cast<float>(weights[1]) * at(i);
        } else {
            total = static_cast<float>(weights[0]) * at(i - reach);
            for (int k = 1; k < 2 * reach + 1; ++k) {
                total += static_cast<float>(weights[static_cast<std::size_t>(k)]) *
                         at(i - reach + k);
            }
        }
        out[static_cast<std::size_t>(i)] = total / static_cast<float>(sum);
    }
    return out;
}

FloatImage smoothedPlainly(const FloatImage& source, const std::vector<int>& weights) {
    FloatImage plane(source);
    for (int y = 0; y < plane.height(); ++y) {
        std::vector<float> line;
        for (int x = 0; x < plane.width(); ++x) {
            line.push_back(plane.row(x)[y]);
        }
        line = smoothedLine(line, weights);
        for (int x = 0; x < plane.width(); ++x) {
            plane.row(x)[y] = line[static_cast<std::size_t>(x)];
        }
    }
    for (int x = 0; x < plane.width(); ++x) {
        const std::vector<float> line(plane.row(x), plane.row(x) + plane.height());
        const std::vector<float> out = smoothedLine(line, weights);
        std::copy(out.begin(), out.end(), plane.row(x));
    }
    return plane;
}

TEST(FloatImageSmoothing, EqualsTheFormulaOnEverySize) {
    for (const int width : {1, 2, 3, 4, 5, 6, 7, 8, 13}) {
        for (const int height : {1, 2, 3, 5, 6, 7, 9}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            const FloatImage source = noisePlane(width, height, 11);
            FloatImage three(source);
            FloatImage five(source);
            FloatImage seven(source);

            three.smooth3(1, -2, 3);
            five.smooth5(1, 4, 6, 3, 2);
            seven.smooth7(1, 2, 3, 5, 4, -2, 1);

            EXPECT_TRUE(sameBits(three, smoothedPlainly(source, {1, -2, 3})));
            EXPECT_TRUE(sameBits(five, smoothedPlainly(source, {1, 4, 6, 3, 2})));
            EXPECT_TRUE(sameBits(seven, smoothedPlainly(source, {1, 2, 3, 5, 4, -2, 1})));
        }
    }
}

TEST(FloatImageSmoothing, EveryTargetEqualsTheFormula) {
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        if (!isAvailable(target)) {
            continue;
        }
        SCOPED_TRACE(nameOf(target));
        limitKernelTarget(target);
        for (const int height : {40, 67}) {
            const FloatImage source = noisePlane(19, height, 14);
            FloatImage three(source);
            FloatImage five(source);
            FloatImage seven(source);

            three.smooth3(1, 2, 1);
            five.smooth5(1, 2, 9, 2, 1);
            seven.smooth7(1, 3, 5, 6, 5, 3, 1);

            EXPECT_TRUE(sameBits(three, smoothedPlainly(source, {1, 2, 1})));
            EXPECT_TRUE(sameBits(five, smoothedPlainly(source, {1, 2, 9, 2, 1})));
            EXPECT_TRUE(sameBits(seven, smoothedPlainly(source, {1, 3, 5, 6, 5, 3, 1})));
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(FloatImageSmoothing, TheFirstOfThreeWeightsGoesToThePreviousSample) {
    FloatImage plane(1, 3);
    plane.row(0)[0] = 8.0f;

    plane.smooth3(3, 0, 1);

    EXPECT_EQ(plane.row(0)[1], 6.0f);
    EXPECT_EQ(plane.row(0)[0], 8.0f);
}

TEST(FloatImageSmoothing, NegativeWeightsCountWithTheirSizeInTheDivisor) {
    FloatImage plane(1, 3, 4.0f);

    plane.smooth3(-1, 2, -1);

    EXPECT_EQ(plane.row(0)[1], 0.0f);
    plane.fill(4.0f);
    plane.smooth3(-1, 4, -1);
    EXPECT_EQ(plane.row(0)[1], 8.0f / 6.0f);
}

TEST(FloatImageSmoothing, CellsThatTheKernelCannotReachKeepTheirValues) {
    const FloatImage source = noisePlane(6, 6, 12);
    FloatImage five(source);
    FloatImage seven(source);

    five.smooth5(1, 1, 1, 1, 1);
    seven.smooth7(1, 1, 1, 1, 1, 1, 1);

    // Six samples are below the seven that the widest form needs.
    EXPECT_TRUE(sameBits(seven, source));
    for (const int x : {0, 1, 4, 5}) {
        for (const int y : {0, 1, 4, 5}) {
            EXPECT_EQ(five.row(x)[y], source.row(x)[y]);
        }
    }
    EXPECT_NE(five.row(2)[2], source.row(2)[2]);
}

}  // namespace
}  // namespace orv
