#include "images/curvature_flow.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "base/cpu_features.h"
#include "images/curvature_plain.h"
#include "support/kernel_targets.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::availableTargets;
using test::noiseRealPlane;
using test::noiseRealPlanes;
using test::sameBits;
using test::TargetLimit;

constexpr std::array<CurvatureFlow, 3> kFlows = {
    CurvatureFlow::Beltrami, CurvatureFlow::PeronaMalik, CurvatureFlow::MeanCurvature};

constexpr std::array<std::pair<int, int>, 14> kSizes = {{{1, 1},
                                                         {2, 9},
                                                         {3, 3},
                                                         {9, 2},
                                                         {4, 4},
                                                         {5, 5},
                                                         {6, 4},
                                                         {4, 7},
                                                         {5, 6},
                                                         {17, 31},
                                                         {32, 33},
                                                         {40, 23},
                                                         {5, 67},
                                                         {7, 140}}};

/// What `run` prints.
template <class Run>
std::string textOf(Run run) {
    testing::internal::CaptureStdout();
    run();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

/// Runs `body` with every kernel target and size.
template <class Body>
void onEveryTarget(Body body) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const auto& [width, height] : kSizes) {
            SCOPED_TRACE(testing::Message()
                         << nameOf(target) << ", " << width << " x " << height);
            body(width, height);
        }
    }
}

TEST(CurvatureFlow, EveryFlowHasTheBitsOfItsFormula) {
    onEveryTarget([](int width, int height) {
        for (const CurvatureFlow flow : kFlows) {
            // Samples beyond 0 and 255 show which of them are limited.
            RealImage plane = noiseRealPlane(width, height, 3, -20.0, 280.0);
            RealImage expected(plane);

            textOf([&] { runCurvatureFlow(flow, 0.7, 4, plane); });
            test::plainFlow(flow, /*geodesic=*/false, 0.7, 0.0, 4, expected);

            EXPECT_TRUE(sameBits(plane, expected)) << static_cast<int>(flow);
        }
    });
}

TEST(CurvatureFlow, EveryGeodesicFlowHasTheBitsOfItsFormula) {
    onEveryTarget([](int width, int height) {
        for (const CurvatureFlow flow : kFlows) {
            RealImage plane = noiseRealPlane(width, height, 4, -20.0, 280.0);
            RealImage expected(plane);

            textOf([&] { runGeodesicCurvatureFlow(flow, 0.4, 3.0, 4, plane); });
            test::plainFlow(flow, /*geodesic=*/true, 0.4, 3.0, 4, expected);

            EXPECT_TRUE(sameBits(plane, expected)) << static_cast<int>(flow);
        }
    });
}

TEST(CurvatureFlow, FullColorBeltramiHasTheBitsOfItsFormula) {
    onEveryTarget([](int width, int height) {
        RealImage3 planes = noiseRealPlanes(width, height, 5);
        planes.addAll(-10.0);
        planes.scaleAll(1.1);
        RealImage3 expected(planes);

        textOf([&] { runFullColorBeltrami(20.0, 3, planes); });
        test::plainFullColor(20.0, 3, expected);

        EXPECT_TRUE(sameBits(planes, expected));
    });
}

TEST(CurvatureFlow, GentleSlopesHaveTheBitsOfTheFormulaToo) {
    onEveryTarget([](int width, int height) {
        for (const CurvatureFlow flow : kFlows) {
            RealImage plane = noiseRealPlane(width, height, 6, 100.0, 101.0);
            RealImage expected(plane);

            textOf([&] { runCurvatureFlow(flow, 0.2, 5, plane); });
            test::plainFlow(flow, /*geodesic=*/false, 0.2, 0.0, 5, expected);

            EXPECT_TRUE(sameBits(plane, expected)) << static_cast<int>(flow);
        }
    });
}

TEST(CurvatureFlow, EachFlowDividesByItsPowerOfD) {
    // fx = fy = fxx = fyy = 2 and fxy = 0: N = 20, D = 9.
    const auto moved = [](CurvatureFlow flow) {
        RealImage plane(3, 3, 100.0);
        plane.row(1)[1] = 101.0;
        plane.row(2)[1] = 104.0;
        plane.row(1)[2] = 104.0;
        curvatureStep(flow, 1.0, plane);
        return plane.row(1)[1];
    };

    EXPECT_EQ(moved(CurvatureFlow::MeanCurvature), 20.0 / 9.0 + 101.0);
    EXPECT_EQ(moved(CurvatureFlow::PeronaMalik), 20.0 / 27.0 + 101.0);
    EXPECT_EQ(moved(CurvatureFlow::Beltrami), 20.0 / 81.0 + 101.0);
}

TEST(Quirk, CurvatureFirstIteration) {
    for (const CurvatureFlow flow : kFlows) {
        const RealImage source = noiseRealPlane(12, 9, 1);
        RealImage plain(source);
        RealImage geodesic(source);
        RealImage oneStep(source);
        RealImage twoIterations(source);

        textOf([&] {
            runCurvatureFlow(flow, 0.2, 1, plain);
            runGeodesicCurvatureFlow(flow, 0.2, 0.04, 1, geodesic);
            runCurvatureFlow(flow, 0.2, 2, twoIterations);
        });
        curvatureStep(flow, 0.2, oneStep);

        EXPECT_TRUE(sameBits(plain, source));
        EXPECT_TRUE(sameBits(geodesic, source));
        EXPECT_FALSE(sameBits(twoIterations, source));
        EXPECT_TRUE(sameBits(twoIterations, oneStep));
    }
}

TEST(CurvatureFlow, TheFirstIterationLimitsTheSamplesThatMove) {
    RealImage plain(7, 7, 300.0);
    RealImage geodesic(7, 7, -3.0);

    textOf([&] {
        runCurvatureFlow(CurvatureFlow::Beltrami, 0.2, 1, plain);
        runGeodesicCurvatureFlow(CurvatureFlow::Beltrami, 0.2, 0.1, 1, geodesic);
    });

    EXPECT_EQ(plain.row(0)[3], 300.0);
    EXPECT_EQ(plain.row(1)[1], 255.0);
    EXPECT_EQ(geodesic.row(1)[3], -3.0);
    EXPECT_EQ(geodesic.row(2)[2], 0.0);
}

TEST(CurvatureFlow, DriversTellEveryTenthIterationAndTheEnd) {
    RealImage plane = noiseRealPlane(5, 5, 1);
    const auto plain = [&](int iterations) {
        return textOf(
            [&] { runCurvatureFlow(CurvatureFlow::MeanCurvature, 0.1, iterations, plane); });
    };

    EXPECT_EQ(plain(0), "\nrestauration done\n");
    EXPECT_EQ(plain(1), " 0\nrestauration done\n");
    EXPECT_EQ(plain(10), " 0\nrestauration done\n");
    EXPECT_EQ(plain(11), " 0 10\nrestauration done\n");
    EXPECT_EQ(
        textOf([&] { runGeodesicCurvatureFlow(CurvatureFlow::Beltrami, 0.1, 0.1, 21, plane); }),
        " 0 10 20\nrestauration done\n");
}

TEST(CurvatureFlow, FullColorBeltramiTellsEveryFifthIteration) {
    RealImage3 planes = noiseRealPlanes(5, 5, 1);

    EXPECT_EQ(textOf([&] { runFullColorBeltrami(0.1, 0, planes); }), "\n");
    EXPECT_EQ(textOf([&] { runFullColorBeltrami(0.1, 6, planes); }), " 0 5\n");
}

TEST(CurvatureFlow, FullColorBeltramiMovesInItsFirstIteration) {
    const RealImage3 source = noiseRealPlanes(9, 8, 1);
    RealImage3 planes(source);

    textOf([&] { runFullColorBeltrami(0.5, 1, planes); });

    EXPECT_NE(planes.plane(1).row(4)[4], source.plane(1).row(4)[4]);
    EXPECT_EQ(planes.plane(1).row(1)[4], source.plane(1).row(1)[4]);
    EXPECT_EQ(planes.plane(1).row(4)[6], source.plane(1).row(4)[6]);
}

TEST(CurvatureFlow, AFlatPictureStaysAsItIs) {
    RealImage3 planes(9, 9);
    for (int k = 0; k < 3; ++k) {
        planes.plane(k).fill(40.0 + 70.0 * k);
    }
    const RealImage3 source(planes);

    fullColorBeltramiStep(5.0, planes);
    for (const CurvatureFlow flow : kFlows) {
        curvatureStep(flow, 5.0, planes.plane(0));
        geodesicCurvatureStep(flow, 5.0, 1.0, planes.plane(1));
    }

    EXPECT_TRUE(sameBits(planes, source));
}

TEST(CurvatureFlow, NotANumberSpreadsAndIsNotLimited) {
    RealImage3 planes(9, 9);
    planes.plane(0).row(4)[4] = std::numeric_limits<double>::quiet_NaN();

    fullColorBeltramiStep(1.0, planes);

    EXPECT_TRUE(std::isnan(planes.plane(0).row(4)[4]));
    EXPECT_TRUE(std::isnan(planes.plane(2).row(3)[4]));
    EXPECT_EQ(planes.plane(2).row(2)[4], 0.0);
}

TEST(CurvatureFlow, SmoothingLowersTheNoiseOfAFlatPicture) {
    RealImage plane = noiseRealPlane(32, 32, 9, 120.0, 121.0);
    const auto spread = [&] {
        double sum = 0.0;
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            sum += (plane.data()[i] - 120.5) * (plane.data()[i] - 120.5);
        }
        return sum;
    };
    const double before = spread();

    for (int step = 0; step < 10; ++step) {
        curvatureStep(CurvatureFlow::MeanCurvature, 0.2, plane);
    }

    EXPECT_LT(spread(), before / 4.0);
}

}  // namespace
}  // namespace orv
