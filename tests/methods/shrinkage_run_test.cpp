#include "methods/shrinkage_run.h"

#include <gtest/gtest.h>

#include "methods/plane_run.h"
#include "operators/thin/wavelet_denoising_operator.h"
#include "support/gaussian_noise.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::sameBits;

FloatImage noisyPlane(int width, int height, double deviation) {
    FloatImage plane(width, height, 120.0f);
    test::addNoise(plane, deviation, 3);
    return plane;
}

double differenceOf(const FloatImage& a, const FloatImage& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.sampleCount(); ++i) {
        sum += (a.data()[i] - b.data()[i]) * (a.data()[i] - b.data()[i]);
    }
    return sum;
}

TEST(ShrinkageRun, OneShiftIsTheOperatorsOwnResult) {
    const FloatImage plane = noisyPlane(50, 41, 10.0);
    WaveletDenoisingOperator op(0, -1, 3);

    const auto shrunk = shrunkPlane(plane, Shrinkage());

    EXPECT_TRUE(sameBits(*shrunk, *floatImageOf(*op.runPlaneMirrored(*realImageOf(plane)))));
}

TEST(ShrinkageRun, NoNoiseChangesNothing) {
    const FloatImage plane = noisyPlane(50, 41, 10.0);
    Shrinkage shrinkage;
    shrinkage.noise = 0.0;
    shrinkage.shifts = 4;

    EXPECT_TRUE(sameBits(*shrunkPlane(plane, shrinkage), plane));
}

TEST(ShrinkageRun, MoreNoiseToRemoveChangesMore) {
    const FloatImage plane = noisyPlane(64, 64, 10.0);
    double before = 0.0;
    for (const double noise : {0.1, 2.0, 5.0, 10.0, 20.0}) {
        Shrinkage shrinkage;
        shrinkage.noise = noise;
        const double change = differenceOf(*shrunkPlane(plane, shrinkage), plane);

        EXPECT_GT(change, before) << noise;
        before = change;
    }
}

TEST(ShrinkageRun, ShiftsBringAPhotoCloser) {
    const Planes clean = test::photoCropPlanes("astronaut");
    const Planes noisy = test::noisyPhoto(clean, 15.0, 5);
    double before = 1e30;
    for (const int shifts : {1, 2, 4, 8}) {
        Shrinkage shrinkage;
        shrinkage.noise = 15.0;
        shrinkage.shifts = shifts;
        const double distance = differenceOf(*shrunkPlane(*noisy[0], shrinkage), *clean[0]);

        EXPECT_LT(distance, before) << shifts;
        before = distance;
    }
}

TEST(ShrinkageRun, PlanesTooSmallForTheWaveletStayAsTheyAre) {
    const FloatImage plane = noisyPlane(40, 15, 10.0);
    Shrinkage shrinkage;
    shrinkage.shifts = 8;

    EXPECT_FALSE(shrinkageFits(shrinkage, 40, 15));
    EXPECT_TRUE(shrinkageFits(shrinkage, 40, 16));
    EXPECT_TRUE(sameBits(*shrunkPlane(plane, shrinkage), plane));
}

}  // namespace
}  // namespace orv
