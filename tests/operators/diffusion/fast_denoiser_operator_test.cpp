#include "operators/diffusion/fast_denoiser_operator.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "images/rgb_discrete_image.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
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

FastDenoiserOperator denoiser(int scheme, double fidelity, bool cflSubsteps = true,
                              int flow = kFlowVariational) {
    return FastDenoiserOperator(scheme, /*iterations=*/1, /*solverIterations=*/10, /*tau=*/2.5,
                                /*sigma=*/0.0, /*contrast=*/12.0, fidelity, /*solverId=*/0,
                                cflSubsteps, flow, /*gradientNormId=*/1);
}

bool sameBits(const FloatImage& a, const FloatImage& b) {
    return std::memcmp(a.data(), b.data(), a.sampleCount() * sizeof(float)) == 0;
}

TEST(FastDenoiserOperator, PlanesAreThoseOfTheSchemeOverAFidelityFlowWithSubSteps) {
    const auto photo = photoImage(11, 8, /*seed=*/1);
    const FloatImage3 planes(*photo);
    for (const int scheme : kAllSchemes) {
        SCOPED_TRACE(scheme);
        FidelityDiffusionFlow flow(0.0, 12.0, 0.3, static_cast<int>(FlowKind::Variational), 1);
        const auto driven = makeScheme({scheme, 1, 10, 2.5, 0, true}, flow);
        const auto expected = FloatPlanesOperator(driven.get()).apply(planes, nullptr);
        FastDenoiserOperator op = denoiser(scheme, 0.3);

        const auto actual = op.runPlanes(planes, nullptr);

        for (int c = 0; c < 3; ++c) {
            EXPECT_TRUE(sameBits(actual->plane(c), expected->plane(c)));
        }
    }
}

TEST(Quirk, DenoiserSubsteps) {
    const auto photo = photoImage(9, 9, /*seed=*/2);
    const FloatImage plane(*photo, 1);
    for (const int scheme : kAllSchemes) {
        FastDenoiserOperator with = denoiser(scheme, 0.3, true);
        FastDenoiserOperator without = denoiser(scheme, 0.3, false);

        EXPECT_TRUE(sameBits(*with.runPlane(plane), *without.runPlane(plane))) << scheme;
    }
    EXPECT_FALSE(denoiser(kSchemeAdi, 0.3, false).cflSubsteps());
}

TEST(FastDenoiserOperator, FidelityDrawsTheResultTowardTheSource) {
    const auto photo = photoImage(16, 16, /*seed=*/3);
    const FloatImage plane(*photo, 2);
    const auto distance = [&](double fidelity) {
        const auto result = denoiser(kSchemeLod, fidelity).runPlane(plane);
        double sum = 0.0;
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            const double d = result->data()[i] - plane.data()[i];
            sum += d * d;
        }
        return sum;
    };

    EXPECT_LT(distance(4.0), distance(0.5));
    EXPECT_LT(distance(0.5), distance(0.0));
}

TEST(FastDenoiserOperator, Flows10And13GiveTheSameImageAndUnknownOnesPeronaMalik) {
    const auto photo = photoImage(9, 9, /*seed=*/4);
    const FloatImage plane(*photo, 1);
    const auto run = [&](int flow) {
        return denoiser(kSchemeAos, 0.2, true, flow).runPlane(plane);
    };

    EXPECT_TRUE(sameBits(*run(10), *run(13)));
    EXPECT_TRUE(sameBits(*run(99), *run(kFlowPeronaMalik)));
    EXPECT_FALSE(sameBits(*run(99), *run(kFlowVariational)));
}

TEST(FastDenoiserOperator, ToleranceChangesNoResult) {
    const auto photo = photoImage(9, 9, /*seed=*/4);
    const FloatImage plane(*photo, 1);
    FastDenoiserOperator plain = denoiser(kSchemeLod, 0.2);
    FastDenoiserOperator loose = denoiser(kSchemeLod, 0.2);
    EXPECT_EQ(plain.tolerance(), 0.0001f);

    loose.setTolerance(1000.0f);

    EXPECT_TRUE(sameBits(*loose.runPlane(plane), *plain.runPlane(plane)));
}

TEST(FastDenoiserOperator, BothColourPathsAndTheMaskedFormsAreOneRun) {
    const auto photo = photoImage(7, 6, /*seed=*/5);
    const SampleImage mask(7, 6, 1);
    FastDenoiserOperator op = denoiser(kSchemeAos, 0.2);
    const auto expected = op.apply(*photo, nullptr);

    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *photo, nullptr), *expected));
    op.setColorPath(1);
    EXPECT_TRUE(sameSamples(*op.apply(*photo, nullptr), *expected));
    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *photo, nullptr), *expected));
}

TEST(FastDenoiserOperator, GreyRunWritesTheRedChannel) {
    SampleImage grey(6, 5, 1);
    for (int x = 0; x < 6; ++x) {
        for (int y = 0; y < 5; ++y) {
            grey.setValue(x, y, 100 + 7 * ((x * 5 + y * 3) % 11));
        }
    }
    const SampleImage mask(6, 5, 1);
    FastDenoiserOperator op = denoiser(kSchemeAos, 0.2);
    const auto expected = op.runPlane(FloatImage(grey));

    const auto result = op.apply(grey, nullptr);
    const auto masked = op.applyMasked(mask, grey, nullptr);

    EXPECT_EQ(result->red(3, 2), static_cast<int>(expected->row(3)[2]));
    EXPECT_EQ(result->green(3, 2), grey.green(3, 2));
    EXPECT_TRUE(sameSamples(*masked, *result));
}

TEST(FastDenoiserOperator, UnknownSchemeNumberGivesNull) {
    const auto photo = photoImage(6, 6, /*seed=*/7);
    FastDenoiserOperator op = denoiser(/*scheme=*/5, 0.2);

    EXPECT_EQ(op.apply(*photo, nullptr), nullptr);
    EXPECT_EQ(op.runGrey(*photo, nullptr), nullptr);
    EXPECT_EQ(op.runPlane(FloatImage(*photo)), nullptr);
}

}  // namespace
}  // namespace orv
