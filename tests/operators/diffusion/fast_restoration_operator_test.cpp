#include "operators/diffusion/fast_restoration_operator.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "images/rgb_discrete_image.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/photo_bytes.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::photoImage;
using test::sameSamples;
using test::SampleImage;

constexpr int kAllSchemes[] = {kSchemeLod,  kSchemeAfi,    kSchemeAdi,       kSchemeAos,
                               kSchemeAmos, kScheme2DSemi, kScheme2DImplicit};

FastRestorationOperator restoration(int scheme, int flow, int iterations = 1,
                                    double sigma = 0.0, bool cflSubsteps = true) {
    return FastRestorationOperator(scheme, iterations, /*solverIterations=*/10, /*tau=*/2.5,
                                   sigma,
                                   /*contrast=*/12.0, /*solverId=*/0, cflSubsteps, flow,
                                   /*gradientNormId=*/0);
}

bool sameBits(const FloatImage& a, const FloatImage& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           std::memcmp(a.data(), b.data(), a.sampleCount() * sizeof(float)) == 0;
}

bool sameBits(const FloatImage3& a, const FloatImage3& b) {
    return sameBits(a.plane(0), b.plane(0)) && sameBits(a.plane(1), b.plane(1)) &&
           sameBits(a.plane(2), b.plane(2));
}

// The first channel of a three-channel photo as a picture of one channel.
std::unique_ptr<SampleImage> greyPhoto(int width, int height) {
    const auto photo = photoImage(width, height, /*seed=*/5);
    auto grey = std::make_unique<SampleImage>(width, height, 1);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            grey->setValue(x, y, photo->red(x, y));
        }
    }
    return grey;
}

TEST(FastRestorationOperator, PlanesAreThoseOfTheSchemeOverADiffusionFlow) {
    const auto photo = photoImage(11, 8, /*seed=*/1);
    const FloatImage3 planes(*photo);
    for (const int scheme : kAllSchemes) {
        SCOPED_TRACE(scheme);
        DiffusionFlow flow(0.0, 12.0, static_cast<int>(FlowKind::TotalVariation), 0);
        const auto driven = makeScheme({scheme, 1, 10, 2.5, 0, true}, flow);
        const auto expected = FloatPlanesOperator(driven.get()).apply(planes, nullptr);
        FastRestorationOperator op = restoration(scheme, kFlowTotalVariation);

        const auto actual = op.runPlanes(planes, nullptr);

        EXPECT_TRUE(sameBits(*actual, *expected));
        EXPECT_FALSE(sameBits(*actual, planes));
    }
}

TEST(FastRestorationOperator, BothColourPathsAndTheMaskedFormsAreOneRun) {
    const auto photo = photoImage(7, 6, /*seed=*/2);
    const FloatImage3 planes(*photo);
    const SampleImage mask(7, 6, 1);
    FastRestorationOperator op = restoration(kSchemeAos, kFlowPeronaMalik);

    const auto expected = op.runPlanes(planes, nullptr);

    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr), *expected));
}

TEST(FastRestorationOperator, OnePlaneAloneIsThatPlaneOfThree) {
    const auto photo = photoImage(9, 10, /*seed=*/3);
    const FloatImage3 planes(*photo);
    for (const int scheme : kAllSchemes) {
        // Solver 0 keeps the factors of plane 0 in 2DImplicit; a plane of its own has its own.
        FastRestorationOperator op = restoration(scheme, kFlowPeronaMalik);

        const auto three = op.runPlanes(planes, nullptr);
        const auto one = op.runPlane(planes.plane(0));

        EXPECT_TRUE(sameBits(*one, three->plane(0))) << scheme;
    }
}

TEST(FastRestorationOperator, GreyRunWritesTheDiffusedLuminanceToTheRedChannel) {
    const auto grey = greyPhoto(9, 7);
    FastRestorationOperator op = restoration(kSchemeAos, kFlowPeronaMalik);
    const auto expected = op.runPlane(FloatImage(*grey));
    const SampleImage mask(9, 7, 1);

    const auto result = op.apply(*grey, nullptr);
    const auto masked = op.runGreyMasked(mask, *grey, nullptr);

    EXPECT_EQ(result->red(4, 3), static_cast<int>(expected->row(4)[3]));
    EXPECT_EQ(result->green(4, 3), grey->green(4, 3));
    EXPECT_FALSE(sameSamples(*result, *grey));
    EXPECT_TRUE(sameSamples(*masked, *result));
}

TEST(FastRestorationOperator, GivenGreyTargetKeepsItsOtherChannels) {
    const auto grey = greyPhoto(5, 5);
    FastRestorationOperator op = restoration(kSchemeLod, kFlowPeronaMalik);

    const auto result = op.runGrey(*grey, std::make_unique<SampleImage>(5, 5, 1));

    EXPECT_NE(result->red(2, 2), 0);
    EXPECT_EQ(result->green(2, 2), 0);
}

TEST(FastRestorationOperator, Flows10And13GiveTheSameImage) {
    const auto photo = photoImage(9, 9, /*seed=*/4);
    for (const int scheme : kAllSchemes) {
        FastRestorationOperator a = restoration(scheme, 10);
        FastRestorationOperator b = restoration(scheme, 13);
        FastRestorationOperator c = restoration(scheme, 12);

        const auto image = a.apply(*photo, nullptr);

        EXPECT_TRUE(sameSamples(*b.apply(*photo, nullptr), *image)) << scheme;
        EXPECT_FALSE(sameSamples(*c.apply(*photo, nullptr), *image)) << scheme;
    }
}

TEST(FastRestorationOperator, UnknownFlowNumberIsPeronaMalik) {
    const auto photo = photoImage(9, 9, /*seed=*/4);
    FastRestorationOperator known = restoration(kSchemeAos, kFlowPeronaMalik);
    FastRestorationOperator unknown = restoration(kSchemeAos, 77);

    EXPECT_TRUE(sameSamples(*unknown.apply(*photo, nullptr), *known.apply(*photo, nullptr)));
}

TEST(FastRestorationOperator, ToleranceChangesNoResult) {
    const auto photo = photoImage(9, 9, /*seed=*/4);
    FastRestorationOperator plain(kSchemeLod, 1, 30, 2.5, 0.0, 12.0, /*solverId=*/29, false, 1,
                                  0);
    FastRestorationOperator loose(kSchemeLod, 1, 30, 2.5, 0.0, 12.0, /*solverId=*/29, false, 1,
                                  0);
    EXPECT_EQ(plain.tolerance(), 0.0001f);

    loose.setTolerance(1000.0f);

    EXPECT_TRUE(sameSamples(*loose.apply(*photo, nullptr), *plain.apply(*photo, nullptr)));
}

TEST(FastRestorationOperator, SeveralIterationsWithoutPresmoothingGiveTheResultOfOne) {
    const auto photo = photoImage(8, 9, /*seed=*/6);
    const FloatImage3 planes(*photo);
    for (const int scheme : {kSchemeLod, kSchemeAfi, kSchemeAdi, kSchemeAmos, kSchemeAos}) {
        FastRestorationOperator one = restoration(scheme, kFlowVariational, 1);
        FastRestorationOperator three = restoration(scheme, kFlowVariational, 3);

        EXPECT_TRUE(
            sameBits(*three.runPlanes(planes, nullptr), *one.runPlanes(planes, nullptr)))
            << scheme;
    }
}

TEST(FastRestorationOperator, PresmoothedIterationsGoOnFromTheSmoothedPlane) {
    const auto photo = photoImage(12, 12, /*seed=*/6);
    FastRestorationOperator one = restoration(kSchemeLod, kFlowPeronaMalik, 1, /*sigma=*/1.0);
    FastRestorationOperator three = restoration(kSchemeLod, kFlowPeronaMalik, 3, /*sigma=*/1.0);

    EXPECT_FALSE(sameSamples(*three.apply(*photo, nullptr), *one.apply(*photo, nullptr)));
}

TEST(FastRestorationOperator, NoIterationsGiveTheSource) {
    const auto photo = photoImage(6, 6, /*seed=*/7);
    for (const int iterations : {0, -3}) {
        FastRestorationOperator op = restoration(kSchemeAos, kFlowPeronaMalik, iterations);

        EXPECT_TRUE(sameSamples(*op.apply(*photo, nullptr), *photo));
    }
}

TEST(FastRestorationOperator, SubStepFlagReachesTheSchemesThatHaveSubSteps) {
    const auto photo = photoImage(10, 10, /*seed=*/8);
    const FloatImage3 planes(*photo);
    for (const int scheme : kAllSchemes) {
        FastRestorationOperator with = restoration(scheme, kFlowPeronaMalik, 1, 0.0, true);
        FastRestorationOperator without = restoration(scheme, kFlowPeronaMalik, 1, 0.0, false);
        const bool splits =
            scheme == kSchemeAdi || scheme == kSchemeAmos || scheme == kScheme2DImplicit;

        EXPECT_EQ(
            sameBits(*with.runPlanes(planes, nullptr), *without.runPlanes(planes, nullptr)),
            !splits)
            << scheme;
    }
}

TEST(FastRestorationOperator, UnknownSchemeNumberGivesNull) {
    const auto photo = photoImage(6, 6, /*seed=*/7);
    FastRestorationOperator op = restoration(/*scheme=*/5, kFlowPeronaMalik);

    EXPECT_EQ(op.apply(*photo, nullptr), nullptr);
    EXPECT_EQ(op.runGrey(*photo, nullptr), nullptr);
    EXPECT_EQ(op.runPlane(FloatImage(*photo)), nullptr);
}

}  // namespace
}  // namespace orv
