#include "methods/recolor_method.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "exports/progress_window.h"
#include "images/rgb_discrete_image.h"
#include "methods/plane_run.h"
#include "operators/colour/simple_color_transfer_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::bytePlanes;
using test::imageOf;
using test::sameBits;

MethodResult run(Planes source, Planes style, const Progress& progress = nullptr,
                 const char* strength = "1") {
    Arguments arguments(kRecolorMethod.parameters);
    EXPECT_EQ(arguments.set("strength", strength), "");
    return kRecolorMethod.runWithSecond(std::move(source), std::move(style), arguments,
                                        progress);
}

void expectOperatorsBits(const Planes& source, const Planes& style, const Planes& result) {
    SimpleColorTransferOperator op(std::make_unique<ColorSpaceChain>());
    op.setStyle(*imageOf(style));
    const auto expected = op.runPlanes(RealImage3(*imageOf(source)), nullptr);
    ASSERT_EQ(result.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(
            sameBits(*result[static_cast<std::size_t>(c)], *floatImageOf(expected->plane(c))));
    }
}

TEST(RecolorMethod, IsTheOperatorsResultBeforeItIsTruncated) {
    const Planes source = bytePlanes(33, 21, 3, 1);
    const Planes style = bytePlanes(14, 40, 3, 9);

    const MethodResult result = run(bytePlanes(33, 21, 3, 1), bytePlanes(14, 40, 3, 9));

    EXPECT_EQ(result.error, "");
    expectOperatorsBits(source, style, result.planes);
}

TEST(RecolorMethod, TintsAGreyPictureAsThreeEqualChannels) {
    const Planes source = bytePlanes(33, 21, 1, 1);
    const Planes style = bytePlanes(14, 40, 3, 9);

    const MethodResult result = run(bytePlanes(33, 21, 1, 1), bytePlanes(14, 40, 3, 9));

    expectOperatorsBits(source, style, result.planes);
}

TEST(RecolorMethod, KeepsOnePlaneBetweenTwoGreyPictures) {
    const MethodResult result = run(bytePlanes(33, 21, 1, 1), bytePlanes(14, 40, 1, 9));

    EXPECT_EQ(result.error, "");
    ASSERT_EQ(result.planes.size(), 1U);
    EXPECT_EQ(result.planes[0]->width(), 33);
}

TEST(RecolorMethod, KeepsWhatLiesBetweenWholeGreyLevels) {
    Planes source = bytePlanes(33, 21, 3, 1);
    Planes finer = bytePlanes(33, 21, 3, 1);
    finer[0]->row(4)[4] += 0.25f;

    const MethodResult coarse = run(std::move(source), bytePlanes(14, 40, 3, 9));
    const MethodResult fine = run(std::move(finer), bytePlanes(14, 40, 3, 9));

    EXPECT_GT(fine.planes[0]->row(4)[4], coarse.planes[0]->row(4)[4]);
}

TEST(RecolorMethod, GoesAsFarAsItsStrength) {
    for (const int planes : {1, 3}) {
        const Planes source = bytePlanes(9, 8, planes, 1);
        const MethodResult whole = run(bytePlanes(9, 8, planes, 1), bytePlanes(14, 40, 3, 9));

        const MethodResult none =
            run(bytePlanes(9, 8, planes, 1), bytePlanes(14, 40, 3, 9), nullptr, "0");
        const MethodResult half =
            run(bytePlanes(9, 8, planes, 1), bytePlanes(14, 40, 3, 9), nullptr, "0.5");

        for (std::size_t c = 0; c < 3; ++c) {
            const FloatImage& from = *source[c % source.size()];
            EXPECT_TRUE(sameBits(*none.planes[c], from));
            for (std::size_t i = 0; i < from.sampleCount(); ++i) {
                EXPECT_EQ(
                    half.planes[c]->data()[i],
                    from.data()[i] + 0.5f * (whole.planes[c]->data()[i] - from.data()[i]));
            }
        }
    }
}

TEST(RecolorMethod, CountsSamplesBelowBlackAsBlack) {
    Planes source = bytePlanes(9, 8, 3, 1);
    Planes black = bytePlanes(9, 8, 3, 1);
    source[1]->row(2)[3] = -400.0f;
    black[1]->row(2)[3] = 0.0f;

    const MethodResult result = run(std::move(source), bytePlanes(14, 40, 3, 9));
    const MethodResult expected = run(std::move(black), bytePlanes(14, 40, 3, 9));

    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(sameBits(*result.planes[1], *expected.planes[1]));
}

TEST(RecolorMethod, RefusesWhatIsNoPicture) {
    Planes unfinished = bytePlanes(9, 8, 3, 1);
    unfinished[2]->row(1)[1] = std::numeric_limits<float>::quiet_NaN();
    Planes style = bytePlanes(9, 8, 3, 1);
    style[0]->row(1)[1] = std::numeric_limits<float>::infinity();

    EXPECT_EQ(run(std::move(unfinished), bytePlanes(9, 8, 3, 1)).error,
              "the picture holds samples that aren't finite numbers");
    EXPECT_EQ(run(bytePlanes(9, 8, 3, 1), std::move(style)).error,
              "STYLE holds samples that aren't finite numbers");
    EXPECT_EQ(run(bytePlanes(9, 8, 3, 1), {}).error, "takes 1 or 3 planes, not 0");
}

TEST(RecolorMethod, TellsItsProgressAndStopsWhenAsked) {
    double last = 0.0;
    int calls = 0;
    const MethodResult done =
        run(bytePlanes(300, 200, 3, 1), bytePlanes(300, 200, 3, 7), [&](double share) {
            EXPECT_GE(share, last);
            last = share;
            ++calls;
            return true;
        });
    EXPECT_GT(calls, 8);
    EXPECT_GT(last, 0.9);
    EXPECT_FALSE(done.cancelled);

    for (int at = 1; at < calls; at += 3) {
        int left = at;
        const MethodResult stopped = run(bytePlanes(300, 200, 3, 1), bytePlanes(300, 200, 3, 7),
                                         [&](double) { return --left > 0; });
        EXPECT_TRUE(stopped.cancelled) << at;
        EXPECT_TRUE(stopped.planes.empty());
    }
}

TEST(RecolorMethod, KeepsTheHostsCallbackOut) {
    static int reported = 0;
    const ProgressWindow before = progressWindow();
    progressWindow() = {[](int) { ++reported; }, 10, 20};

    run(bytePlanes(9, 8, 3, 1), bytePlanes(9, 8, 3, 1));

    EXPECT_EQ(reported, 0);
    EXPECT_EQ(progressWindow().progressLow, 10);
    progressWindow() = before;
}

}  // namespace
}  // namespace orv
