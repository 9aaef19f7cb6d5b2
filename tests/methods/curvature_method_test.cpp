#include "methods/curvature_method.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/text_output.h"
#include "images/curvature_flow.h"
#include "methods/plane_run.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;
using test::sameBits;

Planes noisyPlanes(std::size_t count) {
    Planes planes;
    for (std::size_t i = 0; i < count; ++i) {
        planes.push_back(noisePlane(17, 14, static_cast<unsigned>(i)).clone());
    }
    return planes;
}

Arguments argumentsWith(const char* flow, const char* coeff, const char* pull,
                        const char* steps) {
    Arguments arguments(kCurvatureMethod.parameters);
    EXPECT_EQ(arguments.set("flow", flow), "");
    EXPECT_EQ(arguments.set("coeff", coeff), "");
    EXPECT_EQ(arguments.set("pull", pull), "");
    EXPECT_EQ(arguments.set("steps", steps), "");
    return arguments;
}

struct Named {
    const char* name;
    CurvatureFlow flow;
};

constexpr Named kPlain[] = {{"beltrami", CurvatureFlow::Beltrami},
                            {"perona-malik", CurvatureFlow::PeronaMalik},
                            {"mean-curvature", CurvatureFlow::MeanCurvature}};

TEST(CurvatureMethod, NStepsAreNPlusOneIterationsOfTheDriver) {
    for (const Named& named : kPlain) {
        for (const bool geodesic : {false, true}) {
            for (const std::size_t count : {1u, 3u}) {
                const std::string name =
                    (geodesic ? "geodesic-" : "") + std::string(named.name);
                SCOPED_TRACE(name);
                const Planes source = noisyPlanes(count);

                const MethodResult result = kCurvatureMethod.run(
                    noisyPlanes(count), argumentsWith(name.c_str(), "2.5", "0.5", "3"), {});

                ASSERT_EQ(result.error, "");
                ASSERT_EQ(result.planes.size(), count);
                for (std::size_t k = 0; k < count; ++k) {
                    const auto plane = realImageOf(*source[k]);
                    const SilencedOutput silence;
                    if (geodesic) {
                        runGeodesicCurvatureFlow(named.flow, 2.5, 1.25, 4, *plane);
                    } else {
                        runCurvatureFlow(named.flow, 2.5, 4, *plane);
                    }
                    EXPECT_TRUE(sameBits(*result.planes[k], *floatImageOf(*plane)));
                }
            }
        }
    }
}

TEST(CurvatureMethod, FullColorBeltramiCouplesTheChannels) {
    const auto planes = realImage3Of(noisyPlanes(3));
    {
        const SilencedOutput silence;
        runFullColorBeltrami(9.0, 4, *planes);
    }

    const MethodResult result = kCurvatureMethod.run(
        noisyPlanes(3), argumentsWith("full-color-beltrami", "9", "0", "4"), {});

    ASSERT_EQ(result.error, "");
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(sameBits(*result.planes[static_cast<std::size_t>(k)],
                             *floatImageOf(planes->plane(k))));
    }
}

TEST(CurvatureMethod, FullColorBeltramiRefusesAGreyPicture) {
    EXPECT_EQ(
        kCurvatureMethod
            .run(noisyPlanes(1), argumentsWith("full-color-beltrami", "0.2", "0", "1"), {})
            .error,
        "--flow full-color-beltrami couples three channels and the picture is grey: take "
        "beltrami");
}

TEST(CurvatureMethod, PrintsNothing) {
    testing::internal::CaptureStdout();
    kCurvatureMethod.run(noisyPlanes(3), Arguments(kCurvatureMethod.parameters), {});
    std::fflush(stdout);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(CurvatureMethod, ProgressCountsStepsAndMayStopTheRun) {
    for (const char* flow : {"perona-malik", "full-color-beltrami"}) {
        std::vector<double> seen;
        const Arguments arguments = argumentsWith(flow, "0.2", "0", "5");

        kCurvatureMethod.run(noisyPlanes(3), arguments, [&](double done) {
            EXPECT_GE(done, seen.empty() ? 0.0 : seen.back());
            seen.push_back(done);
            return true;
        });
        const MethodResult stopped =
            kCurvatureMethod.run(noisyPlanes(3), arguments, [](double) { return false; });

        ASSERT_GE(seen.size(), 5u);
        EXPECT_EQ(seen.back(), 1.0);
        EXPECT_TRUE(stopped.cancelled);
    }
}

TEST(CurvatureMethod, ArgumentsOutsideTheirRangeAreRefused) {
    Arguments arguments(kCurvatureMethod.parameters);

    EXPECT_NE(arguments.set("steps", "0"), "");
    EXPECT_NE(arguments.set("coeff", "-0.1"), "");
    EXPECT_NE(arguments.set("flow", "mean"), "");
}

}  // namespace
}  // namespace orv
