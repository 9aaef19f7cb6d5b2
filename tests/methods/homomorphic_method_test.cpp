#include "methods/homomorphic_method.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "base/rounding.h"
#include "methods/method_catalogue.h"
#include "operators/thin/homomorphic_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;
using test::sameBits;

Planes noisyPlanes(int width, int height, int count, double from = 1.0) {
    return test::noisyPlanes(width, height, count, from, 255.0);
}

int reflected(int i, int n) {
    while (i < 0 || i >= n) {
        i = i < 0 ? -1 - i : 2 * n - 1 - i;
    }
    return i;
}

/// What the method runs the operator on: doubles, not below `floor`, with a mirrored margin whose
/// first three samples are equal.
RealImage extended(const FloatImage& plane, double floor, int margin) {
    RealImage out(plane.width() + 2 * margin, plane.height() + 2 * margin);
    for (int x = 0; x < out.width(); ++x) {
        for (int y = 0; y < out.height(); ++y) {
            const int fromX = reflected((x < 3 ? 2 : x) - margin, plane.width());
            const int fromY = reflected((y < 3 && margin > 0 ? 2 : y) - margin, plane.height());
            out.row(x)[y] = std::max(static_cast<double>(plane.row(fromX)[fromY]), floor);
        }
    }
    return out;
}

/// Compares with an operator's result on the extended plane.
void expectInner(const RealImage& whole, int margin, double scale, const FloatImage& result) {
    FloatImage expected(result.width(), result.height());
    for (int x = 0; x < result.width(); ++x) {
        for (int y = 0; y < result.height(); ++y) {
            expected.row(x)[y] = toFloat(whole.row(x + margin)[y + margin] * scale);
        }
    }
    expected.clamp(0.0f, 255.0f);
    EXPECT_TRUE(sameBits(result, expected));
}

Arguments argumentsOf(std::initializer_list<std::pair<const char*, const char*>> values) {
    Arguments arguments(kHomomorphicMethod.parameters);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(arguments.set(name, value), "");
    }
    return arguments;
}

TEST(HomomorphicMethod, IsTheOperatorsOwnResultRoundedAndClamped) {
    const std::pair<const char*, int> modes[] = {{"reflectance", 1},
                                                 {"log-reflectance", 2},
                                                 {"illumination", 4},
                                                 {"log-illumination", 5},
                                                 {"compress", 8}};
    for (const auto& [name, mode] : modes) {
        SCOPED_TRACE(name);
        const Arguments arguments =
            argumentsOf({{"mode", name}, {"gamma", "2.5"}, {"sigma", "3"}, {"scale", "1.5"}});
        HomomorphicOperator direct(mode, 2.5);
        direct.setSigma(3.0);
        for (const int count : {1, 3}) {
            const Planes source = noisyPlanes(21, 18, count);

            const MethodResult result =
                kHomomorphicMethod.run(noisyPlanes(21, 18, count), arguments, nullptr);

            ASSERT_EQ(result.error, "");
            ASSERT_EQ(result.planes.size(), source.size());
            for (std::size_t c = 0; c < source.size(); ++c) {
                const auto whole = direct.runPlane(extended(*source[c], 1.0, 21));
                expectInner(*whole, 21, 1.5, *result.planes[c]);
            }
        }
    }
}

TEST(HomomorphicMethod, WithoutExtensionIsTheCFacesResultBitForBit) {
    const std::pair<const char*, int> modes[] = {{"reflectance", 1},
                                                 {"log-reflectance", 2},
                                                 {"illumination", 4},
                                                 {"log-illumination", 5},
                                                 {"compress", 8}};
    for (const auto& [name, mode] : modes) {
        SCOPED_TRACE(name);
        RealImage3 colour(21, 18);
        for (int c = 0; c < 3; ++c) {
            const FloatImage plane = noisePlane(21, 18, static_cast<unsigned>(c), 0.25, 255.0);
            std::copy_n(plane.data(), plane.sampleCount(), colour.plane(c).data());
        }
        const auto expected = HomomorphicOperator(mode, 1.8).runPlanes(colour, nullptr);
        const Arguments arguments =
            argumentsOf({{"mode", name}, {"extend", "none"}, {"floor", "0"}});

        const MethodResult three =
            kHomomorphicMethod.run(noisyPlanes(21, 18, 3, 0.25), arguments, nullptr);
        const MethodResult one =
            kHomomorphicMethod.run(noisyPlanes(21, 18, 1, 0.25), arguments, nullptr);

        ASSERT_EQ(three.error, "");
        ASSERT_EQ(one.error, "");
        for (int c = 0; c < 3; ++c) {
            expectInner(expected->plane(c), 0, 1.0, *three.planes[static_cast<std::size_t>(c)]);
        }
        expectInner(expected->plane(0), 0, 1.0, *one.planes[0]);
    }
}

TEST(HomomorphicMethod, WithoutExtensionTakesThreeByThreePixelsAndNoLess) {
    const Arguments bare = argumentsOf({{"extend", "none"}});

    EXPECT_EQ(kHomomorphicMethod.run(noisyPlanes(3, 3, 3), bare, nullptr).error, "");
    EXPECT_EQ(kHomomorphicMethod.run(noisyPlanes(2, 9, 3), bare, nullptr).error,
              "--extend: none takes at least 3 x 3 pixels, this picture has 2 x 9");
    EXPECT_EQ(kHomomorphicMethod.run(noisyPlanes(9, 2, 1), bare, nullptr).error,
              "--extend: none takes at least 3 x 3 pixels, this picture has 9 x 2");
}

TEST(HomomorphicMethod, WithoutFloorRefusesBlackSamples) {
    for (const char* const extend : {"mirror", "none"}) {
        for (const float black : {0.0F, -3.0F}) {
            Planes planes = noisyPlanes(9, 9, 3);
            planes[2]->row(8)[8] = black;

            EXPECT_EQ(kHomomorphicMethod
                          .run(std::move(planes),
                               argumentsOf({{"floor", "0"}, {"extend", extend}}), nullptr)
                          .error,
                      "--floor: 0 takes samples above 0 alone, this picture has black ones");
        }
    }
}

TEST(HomomorphicMethod, TheDefaultsAreTheOperatorsOwn) {
    const Planes source = noisyPlanes(21, 18, 3);

    const MethodResult result =
        kHomomorphicMethod.run(noisyPlanes(21, 18, 3), argumentsOf({}), nullptr);

    ASSERT_EQ(result.error, "");
    const auto whole = HomomorphicOperator(8, 1.8).runPlane(extended(*source[1], 1.0, 51));
    expectInner(*whole, 51, 1.0, *result.planes[1]);
}

TEST(HomomorphicMethod, BlackSamplesCountAsTheFloor) {
    for (const char* const floor : {"1", "4.5"}) {
        const Planes source = noisyPlanes(21, 18, 3, -20.0);

        const MethodResult result =
            kHomomorphicMethod.run(noisyPlanes(21, 18, 3, -20.0),
                                   argumentsOf({{"floor", floor}, {"gamma", "2"}}), nullptr);

        ASSERT_EQ(result.error, "");
        for (std::size_t c = 0; c < 3; ++c) {
            const auto whole = HomomorphicOperator(8, 2.0).runPlane(
                extended(*source[c], std::stod(floor), 51));
            expectInner(*whole, 51, 1.0, *result.planes[c]);
        }
    }
}

TEST(HomomorphicMethod, TakesPicturesOfAnySize) {
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 9}, {3, 1}, {200, 2}}) {
        const MethodResult result =
            kHomomorphicMethod.run(noisyPlanes(width, height, 3), argumentsOf({}), nullptr);

        ASSERT_EQ(result.error, "");
        EXPECT_EQ(result.planes[2]->width(), width);
        EXPECT_EQ(result.planes[2]->height(), height);
    }
}

TEST(HomomorphicMethod, RefusesValuesOutsideTheirRanges) {
    Arguments arguments(kHomomorphicMethod.parameters);

    EXPECT_EQ(arguments.set("gamma", "0").substr(0, 9), "--gamma: ");
    EXPECT_EQ(arguments.set("floor", "-1"),
              "--floor: -1 is out of range (expected GREY-LEVELS from 0 to 255, default 1.0)");
    EXPECT_NE(arguments.set("sigma", "0.4"), "");
    EXPECT_NE(arguments.set("scale", "-1"), "");
    EXPECT_NE(arguments.set("mode", "3"), "");
}

TEST(HomomorphicMethod, RefusesPlanesThatItCannotRun) {
    Planes bad = noisyPlanes(9, 9, 3);
    bad[2]->row(3)[3] = std::numeric_limits<float>::infinity();

    EXPECT_EQ(kHomomorphicMethod.run({}, argumentsOf({}), nullptr).error,
              "takes 1 or 3 planes, not 0");
    EXPECT_NE(kHomomorphicMethod.run(std::move(bad), argumentsOf({}), nullptr).error, "");
}

TEST(HomomorphicMethod, ExtremeValuesStayWithinThePicturesRange) {
    for (const char* const mode : {"reflectance", "log-illumination", "compress"}) {
        for (const char* const gamma : {"0.1", "100"}) {
            for (const char* const sigma : {"0.5", "24"}) {
                const MethodResult result =
                    kHomomorphicMethod.run(noisyPlanes(32, 32, 3, -5.0),
                                           argumentsOf({{"mode", mode},
                                                        {"gamma", gamma},
                                                        {"sigma", sigma},
                                                        {"floor", "0.001"},
                                                        {"scale", "1000"}}),
                                           nullptr);

                ASSERT_EQ(result.error, "");
                for (const auto& plane : result.planes) {
                    for (std::size_t i = 0; i < plane->sampleCount(); ++i) {
                        ASSERT_GE(plane->data()[i], 0.0f);
                        ASSERT_LE(plane->data()[i], 255.0f);
                    }
                }
            }
        }
    }
}

TEST(HomomorphicMethod, ReportsProgressThatNeverFallsAndStopsWhenAsked) {
    double last = 0.0;
    int calls = 0;
    const MethodResult whole =
        kHomomorphicMethod.run(noisyPlanes(128, 64, 3), argumentsOf({}), [&](double done) {
            EXPECT_GE(done, last);
            last = done;
            ++calls;
            return true;
        });
    const MethodResult stopped = kHomomorphicMethod.run(
        noisyPlanes(128, 64, 3), argumentsOf({}), [](double done) { return done < 0.2; });

    EXPECT_EQ(whole.error, "");
    EXPECT_DOUBLE_EQ(last, 1.0);
    EXPECT_GT(calls, 30);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
}

TEST(HomomorphicMethod, StandsInTheCatalogue) {
    EXPECT_EQ(findMethod("homomorphic"), &kHomomorphicMethod);
}

}  // namespace
}  // namespace orv
