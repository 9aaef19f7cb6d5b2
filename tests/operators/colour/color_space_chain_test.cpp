#include "operators/colour/color_space_chain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "base/cpu_features.h"
#include "base/elementary.h"
#include "support/kernel_targets.h"
#include "support/plain_colour.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::availableTargets;
using test::noiseRealPlane;
using test::PlainColour;
using test::sameBits;
using test::TargetLimit;

RealImage3 brightPlanes(int width, int height, unsigned seed) {
    RealImage3 planes(width, height);
    for (int c = 0; c < 3; ++c) {
        planes.plane(c).assign(
            noiseRealPlane(width, height, seed + static_cast<unsigned>(c), 0.004, 1.0));
    }
    return planes;
}

TEST(RgbToLmsTransform, MapsAPureColourToItsColumnOfTheMatrix) {
    const RgbToLmsTransform transform;
    double l = 0.0;
    double m = 0.0;
    double s = 0.0;

    transform.forwardSingle(l, m, s, 0.0, 1.0, 0.0);

    EXPECT_EQ(l, 0.5783);
    EXPECT_EQ(m, 0.7244);
    EXPECT_EQ(s, 0.1288);
}

TEST(RgbToLmsTransform, MapsAPureConeResponseBackToItsColumnOfTheInverse) {
    const RgbToLmsTransform transform;
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;

    transform.inverseSingle(r, g, b, 0.0, 0.0, 1.0);

    EXPECT_EQ(r, 0.1193);
    EXPECT_EQ(g, -0.1624);
    EXPECT_EQ(b, 1.2045);
}

TEST(RgbToLmsTransform, MapsPlanesAsItMapsPixels) {
    const RgbToLmsTransform transform;
    const RealImage3 planes = brightPlanes(7, 5, 3);

    const auto forward = transform.forward(planes, nullptr);
    const auto inverse = transform.inverse(planes, nullptr);

    for (int x = 0; x < 7; ++x) {
        for (int y = 0; y < 5; ++y) {
            double a = 0.0;
            double b = 0.0;
            double c = 0.0;
            transform.forwardSingle(a, b, c, planes.plane(0).row(x)[y],
                                    planes.plane(1).row(x)[y], planes.plane(2).row(x)[y]);
            EXPECT_EQ(forward->plane(0).row(x)[y], a);
            EXPECT_EQ(forward->plane(1).row(x)[y], b);
            EXPECT_EQ(forward->plane(2).row(x)[y], c);
            transform.inverseSingle(a, b, c, planes.plane(0).row(x)[y],
                                    planes.plane(1).row(x)[y], planes.plane(2).row(x)[y]);
            EXPECT_EQ(inverse->plane(0).row(x)[y], a);
            EXPECT_EQ(inverse->plane(1).row(x)[y], b);
            EXPECT_EQ(inverse->plane(2).row(x)[y], c);
        }
    }
}

TEST(Quirk, InexactConeMatrices) {
    const RgbToLmsTransform transform;
    double worst = 0.0;
    for (int r = 0; r <= 255; r += 51) {
        for (int g = 0; g <= 255; g += 51) {
            for (int b = 0; b <= 255; b += 51) {
                double l = 0.0;
                double m = 0.0;
                double s = 0.0;
                transform.forwardSingle(l, m, s, r, g, b);
                double back[3] = {};
                transform.inverseSingle(back[0], back[1], back[2], l, m, s);
                worst = std::max({worst, std::fabs(back[0] - r), std::fabs(back[1] - g),
                                  std::fabs(back[2] - b)});
            }
        }
    }

    // Blue gains 0.0072 times the green; all else moves by less than a quarter.
    EXPECT_NEAR(worst, 1.837, 0.001);
}

TEST(LogLmsToLabTransform, MakesGreyConeResponsesColourless) {
    const LogLmsToLabTransform transform;
    RealImage3 planes(2, 3);
    for (int c = 0; c < 3; ++c) {
        planes.plane(c).fill(0.01);
    }

    const auto lab = transform.forward(planes, nullptr);

    // 3 log10(0.01) / sqrt 3; exact numbers but for the factor's rounding.
    EXPECT_DOUBLE_EQ(lab->plane(0).row(1)[2], -6.0 / std::sqrt(3.0));
    EXPECT_EQ(lab->plane(1).row(1)[2], 0.0);
    EXPECT_EQ(lab->plane(2).row(1)[2], 0.0);
}

TEST(LogLmsToLabTransform, MatrixOfOnePixelLeavesLogarithmsAndFactorsOut) {
    const LogLmsToLabTransform transform;
    double l = 0.0;
    double alpha = 0.0;
    double beta = 0.0;

    transform.forwardSingle(l, alpha, beta, 5.0, 3.0, 2.0);
    EXPECT_EQ(l, 10.0);
    EXPECT_EQ(alpha, 4.0);
    EXPECT_EQ(beta, 2.0);

    transform.inverseSingle(l, alpha, beta, 5.0, 3.0, 2.0);
    EXPECT_EQ(l, 10.0);
    EXPECT_EQ(alpha, 6.0);
    EXPECT_EQ(beta, -1.0);
}

TEST(LogLmsToLabTransform, KeepsItsTwoTriplesOfFactors) {
    const LogLmsToLabTransform transform;

    EXPECT_EQ(transform.forwardScale()[0], 0.5773502691896258);
    EXPECT_EQ(transform.forwardScale()[1], 0.4082482904638631);
    EXPECT_EQ(transform.forwardScale()[2], 0.7071067811865475);
    EXPECT_EQ(transform.inverseScale()[0], 0.5773502691896257);
    EXPECT_EQ(transform.inverseScale()[1], 0.40824829046386296);
    EXPECT_EQ(transform.inverseScale()[2], 0.7071067811865476);
}

TEST(LogLmsToLabTransform, UndoesItselfUpToRounding) {
    const LogLmsToLabTransform transform;
    const RealImage3 planes = brightPlanes(17, 23, 9);

    const auto back = transform.inverse(*transform.forward(planes, nullptr), nullptr);

    for (int c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < planes.plane(c).sampleCount(); ++i) {
            const double sample = planes.plane(c).data()[i];
            // A few units in the last place of logarithms down to -2.4.
            EXPECT_NEAR(back->plane(c).data()[i], sample, 2e-14 * sample);
        }
    }
}

TEST(LogLmsToLabTransform, LetsAZeroTravelOnAsMinusInfinity) {
    const LogLmsToLabTransform transform;

    const auto lab = transform.forward(RealImage3(1, 1), nullptr);

    EXPECT_EQ(lab->plane(0).row(0)[0], -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(lab->plane(1).row(0)[0]));
    EXPECT_TRUE(std::isnan(lab->plane(2).row(0)[0]));
}

TEST(ColorSpaceChain, GivesTheBitsOfThePlainFormulas) {
    const ColorSpaceChain chain;
    for (const auto& [width, height] : {std::pair(1, 1), {3, 2}, {37, 61}, {130, 9}}) {
        const RealImage3 planes = brightPlanes(width, height, 21);

        const auto lab = chain.forward(planes, nullptr);
        const auto back = chain.inverse(*lab, nullptr);

        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                const PlainColour::Pixel there =
                    PlainColour::toLab({planes.plane(0).row(x)[y], planes.plane(1).row(x)[y],
                                        planes.plane(2).row(x)[y]});
                const PlainColour::Pixel here = PlainColour::toRgb(there);
                for (int c = 0; c < 3; ++c) {
                    const auto k = static_cast<std::size_t>(c);
                    ASSERT_EQ(lab->plane(c).row(x)[y], there[k]) << x << ", " << y;
                    ASSERT_EQ(back->plane(c).row(x)[y], here[k]) << x << ", " << y;
                }
            }
        }
    }
}

void expectSame(double a, double b) {
    EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << a << ", " << b;
}

// Samples that logarithms and powers treat in their own way, each among many plain ones.
TEST(ColorSpaceChain, GivesThePlainFormulasOfExtremeSamplesOnEveryKernelTarget) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double extremes[] = {0.0,   -0.0,    -1.0,      1e-310,     5e-324,      1.7e308,
                               600.0, -600.0,  -1000.0,   1000.0,     180.0,       -185.0,
                               531.0, -533.49, kInfinity, -kInfinity, std::nan("")};
    const ColorSpaceChain chain;
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const double extreme : extremes) {
            RealImage3 planes = brightPlanes(3, 15, 5);
            for (int c = 0; c < 3; ++c) {
                planes.plane(c).row(1)[c] = extreme;
                planes.plane(c).row(1)[7] = extreme;
            }

            const auto lab = chain.forward(planes, nullptr);
            const auto rgb = chain.inverse(planes, nullptr);

            for (std::size_t i = 0; i < planes.plane(0).sampleCount(); ++i) {
                const PlainColour::Pixel in = {planes.plane(0).data()[i],
                                               planes.plane(1).data()[i],
                                               planes.plane(2).data()[i]};
                for (int c = 0; c < 3; ++c) {
                    const auto k = static_cast<std::size_t>(c);
                    expectSame(lab->plane(c).data()[i], PlainColour::toLab(in)[k]);
                    expectSame(rgb->plane(c).data()[i], PlainColour::toRgb(in)[k]);
                }
            }
        }
    }
}

TEST(LogLmsToLabTransform, LetsPowersLeaveTheRangeOfNumbersOnEveryKernelTarget) {
    const LogLmsToLabTransform transform;
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const double light : {533.0, 534.5, 540.0, -532.9, -534.5, -570.0}) {
            RealImage3 planes(2, 5);
            planes.plane(0).fill(light);
            const double expected = elementaryExp10(light * 0.5773502691896257);

            const auto cones = transform.inverse(planes, nullptr);

            EXPECT_EQ(std::isinf(expected), light > 534.0);
            for (int c = 0; c < 3; ++c) {
                EXPECT_EQ(cones->plane(c).row(1)[4], expected) << light;
            }
        }
    }
}

TEST(ColorSpaceChain, IsTheOneTransformAfterTheOther) {
    const ColorSpaceChain chain;
    const RealImage3 planes = brightPlanes(19, 11, 5);

    const auto forward =
        chain.second().forward(*chain.first().forward(planes, nullptr), nullptr);
    const auto inverse =
        chain.first().inverse(*chain.second().inverse(planes, nullptr), nullptr);

    EXPECT_TRUE(sameBits(*chain.forward(planes, nullptr), *forward));
    EXPECT_TRUE(sameBits(*chain.inverse(planes, nullptr), *inverse));
}

TEST(ColorSpaceChain, WritesIntoATargetAndGivesItBack) {
    const ColorSpaceChain chain;
    const RealImage3 planes = brightPlanes(4, 6, 5);
    auto target = std::make_unique<RealImage3>(4, 6);
    const RealImage3* const before = target.get();

    target = chain.forward(planes, std::move(target));

    EXPECT_EQ(target.get(), before);
    EXPECT_TRUE(sameBits(*target, *chain.forward(planes, nullptr)));
}

TEST(ColorSpaceChain, HasAHookThatDoesNothing) {
    ColorSpaceChain chain;
    const RealImage3 planes = brightPlanes(4, 6, 5);
    const auto before = chain.forward(planes, nullptr);

    chain.hook();

    EXPECT_TRUE(sameBits(*chain.forward(planes, nullptr), *before));
}

}  // namespace
}  // namespace orv
