#include "methods/colorize_method.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "base/runtime_random.h"
#include "images/rgb_discrete_image.h"
#include "methods/plane_run.h"
#include "operators/colour/color_to_grey_transfer_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::bytePlanes;
using test::imageOf;
using test::sameBits;

MethodResult run(Planes grey, Planes colour,
                 std::initializer_list<std::pair<const char*, const char*>> values = {},
                 const Progress& progress = nullptr) {
    Arguments arguments(kColorizeMethod.parameters);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(arguments.set(name, value), "");
    }
    return kColorizeMethod.runWithSecond(std::move(grey), std::move(colour), arguments,
                                         progress);
}

// What a host's first call in a fresh thread gives, before it is truncated.
std::unique_ptr<RealImage3> firstCall(const Planes& grey, const Planes& colour) {
    ColorToGreyTransferOperator op(std::make_unique<ColorSpaceChain>());
    seedRuntimeRandom(1);
    op.learnSwatches(*imageOf(colour));
    return op.runPlanes(std::make_unique<RealImage3>(*imageOf(grey)));
}

void expectBits(const Planes& result, const RealImage3& expected) {
    ASSERT_EQ(result.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(
            sameBits(*result[static_cast<std::size_t>(c)], *floatImageOf(expected.plane(c))));
    }
}

TEST(ColorizeMethod, IsTheOperatorsResultBeforeItIsTruncated) {
    for (const int planes : {1, 3}) {
        const auto expected =
            firstCall(bytePlanes(33, 21, planes, 1, 1.0), bytePlanes(24, 40, 3, 9, 1.0));

        const MethodResult result =
            run(bytePlanes(33, 21, planes, 1, 1.0), bytePlanes(24, 40, 3, 9, 1.0));

        EXPECT_EQ(result.error, "");
        expectBits(result.planes, *expected);
    }
}

TEST(ColorizeMethod, GivesTheOperatorsResultOnBlackPixelsWithoutAFloor) {
    Planes grey = bytePlanes(33, 21, 1, 1);
    Planes colour = bytePlanes(24, 40, 3, 9);
    grey[0]->row(10)[10] = 0.0f;
    for (const auto& plane : colour) {
        plane->row(12)[12] = 0.0f;
    }
    const auto expected = firstCall(grey, colour);

    const MethodResult result = run(std::move(grey), std::move(colour), {{"floor", "0"}});

    EXPECT_EQ(result.error, "");
    expectBits(result.planes, *expected);
}

TEST(ColorizeMethod, KeepsTheColoursAroundABlackPixelByItsFloor) {
    Planes grey = bytePlanes(33, 21, 1, 1, 1.0);
    Planes dotted = bytePlanes(33, 21, 1, 1, 1.0);
    grey[0]->row(10)[10] = 1.0f;
    dotted[0]->row(10)[10] = 0.0f;

    const MethodResult expected = run(std::move(grey), bytePlanes(24, 40, 3, 9));
    const MethodResult result = run(std::move(dotted), bytePlanes(24, 40, 3, 9));

    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_TRUE(sameBits(*result.planes[c], *expected.planes[c]));
    }
}

TEST(ColorizeMethod, RepeatsItsResultAndLeavesTheGeneratorAsItWas) {
    seedRuntimeRandom(99);

    const MethodResult first = run(bytePlanes(33, 21, 1, 1), bytePlanes(24, 40, 3, 9));
    const MethodResult second = run(bytePlanes(33, 21, 1, 1), bytePlanes(24, 40, 3, 9));

    EXPECT_EQ(runtimeRandomState(), 99U);
    EXPECT_TRUE(sameBits(*first.planes[2], *second.planes[2]));
}

TEST(ColorizeMethod, PlacesOtherSwatchesForAnotherSeed) {
    const MethodResult first = run(bytePlanes(33, 21, 1, 1), bytePlanes(24, 40, 3, 9));
    const MethodResult other =
        run(bytePlanes(33, 21, 1, 1), bytePlanes(24, 40, 3, 9), {{"seed", "2"}});

    EXPECT_FALSE(sameBits(*first.planes[2], *other.planes[2]));
}

TEST(ColorizeMethod, RefusesAColourPictureThatIsTooSmallOrGrey) {
    EXPECT_EQ(run(bytePlanes(9, 8, 1, 1), bytePlanes(10, 40, 3, 1)).error,
              "COLOUR has 10 x 40 pixels; it needs at least 11 x 11");
    EXPECT_EQ(run(bytePlanes(9, 8, 1, 1), bytePlanes(40, 10, 3, 1)).error,
              "COLOUR has 40 x 10 pixels; it needs at least 11 x 11");
    EXPECT_EQ(run(bytePlanes(9, 8, 1, 1), bytePlanes(11, 11, 3, 1)).error, "");
    EXPECT_EQ(run(bytePlanes(9, 8, 1, 1), bytePlanes(40, 40, 1, 1)).error,
              "COLOUR is a grey picture; colours have to come from a picture with 3 channels");
}

TEST(ColorizeMethod, TellsItsProgressAndStopsWhenAsked) {
    double last = 0.0;
    int calls = 0;
    const MethodResult done =
        run(bytePlanes(300, 200, 1, 1), bytePlanes(300, 200, 3, 7), {}, [&](double share) {
            EXPECT_GE(share, last);
            last = share;
            ++calls;
            return true;
        });
    EXPECT_GT(last, 0.9);
    EXPECT_FALSE(done.cancelled);

    for (int at = 1; at < calls; at += 5) {
        int left = at;
        const MethodResult stopped = run(bytePlanes(300, 200, 1, 1), bytePlanes(300, 200, 3, 7),
                                         {}, [&](double) { return --left > 0; });
        EXPECT_TRUE(stopped.cancelled) << at;
    }
}

}  // namespace
}  // namespace orv
