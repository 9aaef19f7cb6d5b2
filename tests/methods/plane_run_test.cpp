#include "methods/plane_run.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/text_output.h"

namespace orv {
namespace {

Planes planesWith(std::size_t count, float value) {
    Planes planes;
    for (std::size_t i = 0; i < count; ++i) {
        planes.push_back(std::make_unique<FloatImage>(4, 3, value));
    }
    return planes;
}

/// Adds one to every sample, prints, and counts its calls; stands for an engine operator.
struct PlusOne {
    int onePlane = 0;
    int threePlanes = 0;

    std::unique_ptr<FloatImage> runPlane(const FloatImage& plane) {
        ++onePlane;
        printText("engine text\n");
        return std::make_unique<FloatImage>(4, 3, plane.row(0)[0] + 1.0f);
    }
    std::unique_ptr<FloatImage3> runPlanes(const FloatImage3& planes,
                                           std::unique_ptr<FloatImage3> target) {
        ++threePlanes;
        target = planes.clone();
        for (int i = 0; i < 3; ++i) {
            target->plane(i).fill(planes.plane(i).row(0)[0] + 1.0f);
        }
        return target;
    }
};

/// The same in doubles.
struct RealThird {
    std::unique_ptr<RealImage> runPlane(const RealImage& plane) {
        return std::make_unique<RealImage>(4, 3, plane.row(0)[0] / 3.0);
    }
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) {
        target = planes.clone();
        target->scaleAll(0.5);
        return target;
    }
};

TEST(PlaneRun, OnePlaneGoesToRunPlaneAndThreeToRunPlanes) {
    PlusOne op;
    EXPECT_FLOAT_EQ(runFloatOperator(planesWith(1, 5.0f), {}, op).planes[0]->row(3)[2], 6.0f);
    EXPECT_EQ(op.onePlane, 1);
    EXPECT_EQ(runFloatOperator(planesWith(3, 5.0f), {}, op).planes.size(), 3U);
    EXPECT_EQ(op.threePlanes, 1);
}

TEST(PlaneRun, ResultIsClampedToTheGreyRangeOnce) {
    PlusOne op;
    EXPECT_FLOAT_EQ(runFloatOperator(planesWith(1, 255.0f), {}, op).planes[0]->row(0)[0],
                    255.0f);
    EXPECT_FLOAT_EQ(runFloatOperator(planesWith(3, -7.0f), {}, op).planes[2]->row(0)[0], 0.0f);
}

TEST(PlaneRun, EngineTextStaysOffTheOutput) {
    PlusOne op;
    testing::internal::CaptureStdout();
    runFloatOperator(planesWith(1, 5.0f), {}, op);
    flushText();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(PlaneRun, DoublesAreRoundedToFloatOnTheWayBack) {
    RealThird op;
    const MethodResult one = runRealOperator(planesWith(1, 1.0f), {}, op);
    EXPECT_EQ(one.planes[0]->row(1)[1], static_cast<float>(1.0 / 3.0));
    const MethodResult three = runRealOperator(planesWith(3, 3.0f), {}, op);
    EXPECT_EQ(three.planes[2]->row(3)[2], 1.5f);
}

TEST(PlaneRun, RefusesOtherCountsOfPlanesUnequalSizesAndSamplesThatAreNotFinite) {
    PlusOne op;
    EXPECT_EQ(runFloatOperator(planesWith(2, 0.0f), {}, op).error,
              "takes 1 or 3 planes, not 2");
    Planes unequal = planesWith(3, 0.0f);
    unequal[1] = std::make_unique<FloatImage>(3, 4);
    EXPECT_EQ(runFloatOperator(std::move(unequal), {}, op).error,
              "the planes are empty or of unequal size");
    EXPECT_EQ(
        runFloatOperator(planesWith(1, std::numeric_limits<float>::infinity()), {}, op).error,
        "the picture holds samples that aren't finite numbers");
    EXPECT_EQ(op.onePlane + op.threePlanes, 0);
}

TEST(PlaneRun, RefusesAResultThatIsNotFiniteOrMissing) {
    const std::string text = "gives samples that aren't finite numbers with these parameters";
    const auto toNan = [](Planes planes) {
        planes[0]->row(2)[1] = std::nanf("");
        return planes;
    };
    EXPECT_EQ(runPlaneWork(planesWith(1, 1.0f), {}, toNan).error, text);
    const auto toNothing = [](Planes /*planes*/) { return Planes(); };
    EXPECT_EQ(runPlaneWork(planesWith(1, 1.0f), {}, toNothing).error, text);
}

TEST(PlaneRun, StopsWhenTheProgressFunctionAsksTo) {
    const auto work = [](Planes planes) {
        EXPECT_FALSE(reportWork(1, 2));
        return planes;
    };
    const MethodResult result = runPlaneWork(
        planesWith(3, 1.0f), [](double) { return false; }, work);
    EXPECT_TRUE(result.cancelled);
    EXPECT_TRUE(result.planes.empty());
    EXPECT_EQ(result.error, "");
}

TEST(PlaneRun, HostsProgressWindowIsLeftAsItWasFound) {
    progressWindow().progressLow = 7;
    progressWindow().progressHigh = 70;
    const auto work = [](Planes planes) {
        EXPECT_EQ(progressWindow().callback, nullptr);
        progressWindow().progressLow = 1;
        return planes;
    };
    runPlaneWork(planesWith(1, 1.0f), {}, work);
    EXPECT_EQ(progressWindow().progressLow, 7);
    EXPECT_EQ(progressWindow().progressHigh, 70);
    progressWindow().progressLow = 0;
    progressWindow().progressHigh = 100;
}

}  // namespace
}  // namespace orv
