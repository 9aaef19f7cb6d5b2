#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/rounding.h"
#include "methods/denoise_method.h"
#include "methods/restore_method.h"
#include "methods/wavelet_method.h"
#include "methods/working_planes.h"
#include "operators/diffusion/fast_restoration_operator.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "support/gaussian_noise.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

// What the noise methods share: opponent colours, the border, and shrinkage mixed in.

namespace orv {
namespace {

using test::argumentsOf;
using test::copyOf;
using test::noisyPlanes;
using test::sameBits;

using Values = std::initializer_list<std::pair<const char*, const char*>>;

Planes runWith(const Method& method, const Planes& planes, Values values) {
    MethodResult result = method.run(copyOf(planes), argumentsOf(method, values), nullptr);
    EXPECT_EQ(result.error, "");
    return std::move(result.planes);
}

void expectSameBits(const Planes& a, const Planes& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t c = 0; c < a.size(); ++c) {
        EXPECT_TRUE(sameBits(*a[c], *b[c])) << "plane " << c;
    }
}

void expectNear(const Planes& a, const Planes& b, double tolerance) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t c = 0; c < a.size(); ++c) {
        for (std::size_t i = 0; i < a[c]->sampleCount(); ++i) {
            ASSERT_NEAR(a[c]->data()[i], b[c]->data()[i], tolerance);
        }
    }
}

TEST(RestoreMixture, AllShrinkageIsWhatTheWaveletMethodGives) {
    const Planes planes = noisyPlanes(40, 33, 3, 60.0, 190.0);

    expectSameBits(
        runWith(kRestoreMethod, planes, {{"shrinkage", "1"}, {"shifts", "3"}, {"noise", "9"}}),
        runWith(kWaveletMethod, planes, {{"shifts", "3"}, {"noise", "9"}}));
}

TEST(RestoreMixture, AShareIsMixedWithTheDiffusion) {
    const Planes planes = noisyPlanes(40, 33, 1, 60.0, 190.0);
    const Planes diffused = runWith(kRestoreMethod, planes, {{"tau", "2"}});
    Planes expected = runWith(kWaveletMethod, planes, {{"shifts", "4"}});
    for (std::size_t i = 0; i < expected[0]->sampleCount(); ++i) {
        float& sample = expected[0]->data()[i];
        sample = 0.75f * diffused[0]->data()[i] + 0.25f * sample;
    }

    // Nothing is clamped between the two, and nothing has to be.
    expectNear(runWith(kRestoreMethod, planes, {{"tau", "2"}, {"shrinkage", "0.25"}}), expected,
               1e-4);
}

TEST(RestoreMixture, PicturesTooSmallForWaveletsAreDiffusedAlone) {
    const Planes planes = noisyPlanes(40, 15, 1, 60.0, 190.0);

    expectSameBits(runWith(kRestoreMethod, planes, {{"shrinkage", "0.5"}}),
                   runWith(kRestoreMethod, planes, {}));
}

TEST(RestoreMixture, NoStepsAndNoShrinkageChangeNoSample) {
    const Planes planes = noisyPlanes(21, 30, 3, 0.0, 255.0);
    for (const Method* const method : {&kRestoreMethod, &kDenoiseMethod}) {
        expectSameBits(runWith(*method, planes, {{"steps", "0"}, {"colours", "opponent"}}),
                       planes);
    }
    expectSameBits(runWith(kWaveletMethod, planes, {{"noise", "0"}, {"colours", "opponent"}}),
                   planes);
}

TEST(RestoreMixture, OpponentPlanesDiffuseEachByItselfWithAContrastOfTheirOwn) {
    const Planes planes = noisyPlanes(29, 26, 3, 60.0, 190.0);
    Planes expected = copyOf(planes);
    turnToOpponent(expected);
    for (std::size_t c = 0; c < 3; ++c) {
        FastRestorationOperator op(
            kSchemeLod, /*iterations=*/1, /*solverIterations=*/50,
            /*tau=*/2.0, /*sigma=*/0.7, c == 0 ? 6.0 : 3.0, /*solverId=*/0,
            /*cflSubsteps=*/false, kFlowPeronaMalik, /*gradientNormId=*/0);
        expected[c] = op.runPlane(*expected[c]);
    }
    turnToRgb(expected);

    expectSameBits(runWith(kRestoreMethod, planes,
                           {{"scheme", "LOD"},
                            {"tau", "2"},
                            {"sigma", "0.7"},
                            {"contrast", "6"},
                            {"chroma", "0.5"},
                            {"steps", "1"},
                            {"colours", "opponent"}}),
                   expected);
}

TEST(RestoreMixture, WithoutChromaTheColoursStay) {
    const Planes planes = noisyPlanes(29, 26, 3, 60.0, 190.0);
    for (const Method* const method : {&kRestoreMethod, &kDenoiseMethod, &kWaveletMethod}) {
        Arguments arguments = argumentsOf(*method, {{"colours", "opponent"}, {"chroma", "0"}});
        if (method == &kWaveletMethod) {
            ASSERT_EQ(arguments.set("noise", "10"), "");
        }
        Planes result = method->run(copyOf(planes), arguments, nullptr).planes;
        Planes source = copyOf(planes);
        ASSERT_EQ(result.size(), 3U);

        turnToOpponent(result);
        turnToOpponent(source);

        EXPECT_FALSE(sameBits(*result[0], *source[0]));
        for (std::size_t i = 0; i < source[0]->sampleCount(); ++i) {
            // Turned there and back twice.
            ASSERT_NEAR(result[1]->data()[i], source[1]->data()[i], 1e-3);
            ASSERT_NEAR(result[2]->data()[i], source[2]->data()[i], 1e-3);
        }
    }
}

TEST(RestoreMixture, AMirroredBorderSmoothsTheFrame) {
    Planes planes;
    planes.push_back(std::make_unique<FloatImage>(80, 60, 120.0f));
    test::addNoise(*planes[0], 10.0, 9);
    const auto frameNoise = [](const Planes& result) {
        double squares = 0.0;
        for (int y = 0; y < 60; ++y) {
            const double left = result[0]->row(0)[y] - 120.0;
            const double right = result[0]->row(79)[y] - 120.0;
            squares += left * left + right * right;
        }
        return std::sqrt(squares / 120.0);
    };
    for (const Method* const method : {&kRestoreMethod, &kDenoiseMethod}) {
        const Values still = {{"contrast", "40"}, {"border", "still"}};
        const Values mirror = {{"contrast", "40"}, {"border", "mirror"}};

        EXPECT_GT(frameNoise(runWith(*method, planes, still)), 5.0);
        EXPECT_LT(frameNoise(runWith(*method, planes, mirror)), 4.0);
    }
}

TEST(RestoreMixture, TellsHowFarItIsAndStopsWhenAsked) {
    const Arguments arguments = argumentsOf(
        kRestoreMethod, {{"shrinkage", "0.5"}, {"colours", "opponent"}, {"border", "mirror"}});
    std::vector<double> reports;
    int calls = 0;

    const MethodResult whole =
        kRestoreMethod.run(noisyPlanes(64, 50, 3), arguments, [&](double done) {
            reports.push_back(done);
            return true;
        });
    const MethodResult stopped =
        kRestoreMethod.run(noisyPlanes(64, 50, 3), arguments, [&](double) {
            ++calls;
            return calls < 3;
        });

    ASSERT_EQ(whole.error, "");
    ASSERT_GE(reports.size(), 20U);
    for (std::size_t i = 1; i < reports.size(); ++i) {
        EXPECT_LE(reports[i - 1], reports[i]);
    }
    EXPECT_LT(reports.front(), 0.1);
    EXPECT_GT(reports.back(), 0.95);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
    EXPECT_LE(calls, 12);
}

}  // namespace
}  // namespace orv
