#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "exports/keyword.h"
#include "images/float_image3.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "orv/orv.h"
#include "orv/orv_constants.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/handle.h"
#include "support/photo_bytes.h"

namespace orv {
namespace {

using test::Handle;
using test::photoHandle;
using test::photoImage;
using test::pixelsOf;

struct Named {
    const char* keyword;
    int number;
};

constexpr Named kSchemes[] = {{"2DSemi", 30}, {"2DImplicit", 40}, {"LOD", 0},  {"AFI", 1},
                              {"ADI", 10},    {"AOS", 20},        {"AMOS", 21}};
constexpr Named kFlows[] = {{"PM", 1},  {"WE2", 11}, {"WE3", 12}, {"WE4", 13},
                            {"WE", 10}, {"VAR", 20}, {"TV", 21}};

// The arguments of both exports, with values that run.
struct Arguments {
    const char* scheme = "AOS";
    int solverId = 0;
    int iterations = 1;
    double tau = 2.5;
    int solverIterations = 20;
    double sigma = 0.0;
    double contrast = 12.0;
    double fidelity = 0.2;
    const char* flow = "PM";
    int gradientNormId = 0;
    int cflSubsteps = 1;
};

Handle restore(void* image, const Arguments& a) {
    return Handle(ORVFastRestoration(image, a.scheme, a.solverId, a.iterations, a.tau,
                                     a.solverIterations, a.sigma, a.contrast, a.flow,
                                     a.gradientNormId, a.cflSubsteps));
}

Handle denoise(void* image, const Arguments& a) {
    return Handle(ORVFastDenoiser(image, a.scheme, a.solverId, a.iterations, a.tau,
                                  a.solverIterations, a.sigma, a.contrast, a.fidelity, a.flow,
                                  a.gradientNormId, a.cflSubsteps));
}

// What a flow and a scheme make of the photo, written back to bytes.
std::vector<unsigned char> driven(const RgbDiscreteImage& photo, Flow& flow, int scheme,
                                  const Arguments& a, int solverId, bool cflSubsteps) {
    const auto plane = makeScheme(
        {scheme, a.iterations, a.solverIterations, a.tau, solverId, cflSubsteps}, flow);
    const auto planes = FloatPlanesOperator(plane.get()).apply(FloatImage3(photo), nullptr);
    RgbDiscreteImage written(photo.width(), photo.height());
    written.setFromFloat3(*planes);
    return std::vector<unsigned char>(written.data(),
                                      written.data() + 3 * photo.width() * photo.height());
}

TEST(ORVFastRestoration, EverySchemeFlowAndNormGivesWhatTheClassesGive) {
    const Handle image = photoHandle(13, 9, /*seed=*/11);
    const auto photo = photoImage(13, 9, /*seed=*/11);
    for (const Named& scheme : kSchemes) {
        for (const Named& flow : kFlows) {
            for (int norm = 0; norm < 6; ++norm) {
                SCOPED_TRACE(::testing::Message() << scheme.keyword << flow.keyword << norm);
                Arguments a;
                a.scheme = scheme.keyword;
                a.flow = flow.keyword;
                a.gradientNormId = norm;
                a.sigma = norm % 2 == 0 ? 0.0 : 0.8;
                a.iterations = norm == 5 ? 2 : 1;
                a.cflSubsteps = norm == 4 ? 0 : 7;
                DiffusionFlow made(a.sigma, a.contrast,
                                   static_cast<int>(flowKindOf(flow.number)), norm);

                const Handle result = restore(image.get(), a);

                ASSERT_NE(result, nullptr);
                EXPECT_EQ(pixelsOf(result),
                          driven(*photo, made, scheme.number, a, 0, a.cflSubsteps != 0));
            }
        }
    }
}

TEST(ORVFastDenoiser, EverySchemeFlowAndNormGivesWhatTheClassesGive) {
    const Handle image = photoHandle(12, 10, /*seed=*/12);
    const auto photo = photoImage(12, 10, /*seed=*/12);
    for (const Named& scheme : kSchemes) {
        for (const Named& flow : kFlows) {
            for (int norm = 0; norm < 6; ++norm) {
                SCOPED_TRACE(::testing::Message() << scheme.keyword << flow.keyword << norm);
                Arguments a;
                a.scheme = scheme.keyword;
                a.flow = flow.keyword;
                a.gradientNormId = norm;
                a.sigma = norm % 2 == 0 ? 0.0 : 0.8;
                FidelityDiffusionFlow made(a.sigma, a.contrast, a.fidelity,
                                           static_cast<int>(flowKindOf(flow.number)), norm);

                const Handle result = denoise(image.get(), a);

                ASSERT_NE(result, nullptr);
                EXPECT_EQ(pixelsOf(result),
                          driven(*photo, made, scheme.number, a, /*solverId=*/29, true));
            }
        }
    }
}

TEST(ORVFastRestoration, SourceStaysAsItWas) {
    const Handle image = photoHandle(8, 7, /*seed=*/1);
    const std::vector<unsigned char> before = pixelsOf(image);

    const Handle restored = restore(image.get(), {});
    const Handle denoised = denoise(image.get(), {});

    EXPECT_NE(restored.get(), image.get());
    EXPECT_NE(pixelsOf(restored), before);
    EXPECT_NE(pixelsOf(denoised), before);
    EXPECT_EQ(pixelsOf(image), before);
}

TEST(ORVFastRestoration, UnknownKeywordsTakeTheDefaultsOfTheExport) {
    const Handle image = photoHandle(9, 8, /*seed=*/2);
    Arguments unknown;
    unknown.scheme = "";
    unknown.flow = "none";
    Arguments peronaMalik;
    Arguments variational;
    variational.flow = "VAR";

    EXPECT_EQ(pixelsOf(restore(image.get(), unknown)),
              pixelsOf(restore(image.get(), peronaMalik)));
    EXPECT_EQ(pixelsOf(denoise(image.get(), unknown)),
              pixelsOf(denoise(image.get(), variational)));
    EXPECT_NE(pixelsOf(restore(image.get(), unknown)),
              pixelsOf(restore(image.get(), variational)));
}

TEST(ORVFastDenoiser, SolverZeroStandsForSolver29) {
    const Handle image = photoHandle(9, 8, /*seed=*/3);
    Arguments zero;
    // One iteration is far from enough here, so that a direct solve would show.
    zero.solverIterations = 1;
    zero.tau = 2000.0;
    zero.contrast = 100.0;
    Arguments named = zero;
    named.solverId = 29;

    const Handle a = denoise(image.get(), zero);
    const Handle b = denoise(image.get(), named);

    ASSERT_NE(a, nullptr);
    EXPECT_EQ(pixelsOf(a), pixelsOf(b));
}

TEST(ORVFastDenoiser, LastArgumentChangesNoResult) {
    const Handle image = photoHandle(9, 8, /*seed=*/4);
    for (const Named& scheme : kSchemes) {
        Arguments with;
        with.scheme = scheme.keyword;
        Arguments without = with;
        without.cflSubsteps = 0;

        EXPECT_EQ(pixelsOf(denoise(image.get(), with)),
                  pixelsOf(denoise(image.get(), without)));
    }
}

TEST(DiffusionExports, SolverIdsOutsideTheCatalogueAreRefused) {
    const Handle image = photoHandle(5, 5, /*seed=*/5);
    for (const int id : {-1, 42, 1000, std::numeric_limits<int>::min()}) {
        Arguments a;
        a.solverId = id;

        EXPECT_EQ(restore(image.get(), a), nullptr) << id;
        EXPECT_EQ(denoise(image.get(), a), nullptr) << id;
    }
}

TEST(DiffusionExports, IncompleteLuIsRefusedOnLineSchemes) {
    const Handle image = photoHandle(5, 5, /*seed=*/5);
    for (const char* scheme : {"LOD", "AFI", "ADI", "AOS", "AMOS"}) {
        Arguments a;
        a.scheme = scheme;
        a.solverId = 41;

        EXPECT_EQ(restore(image.get(), a), nullptr) << scheme;
        EXPECT_EQ(denoise(image.get(), a), nullptr) << scheme;
    }
}

// A system on which solver 29 comes to an end by itself, whatever it is allowed.
TEST(DiffusionExports, IterationLimitOfAnySizeIsTaken) {
    const Handle image = photoHandle(9, 8, /*seed=*/5);
    for (const int limit : {INT_MAX, 1, 0, -1, INT_MIN}) {
        Arguments a;
        a.solverIterations = limit;
        a.solverId = ORV_SOLVER_GMRES_STAR_CBB;

        EXPECT_NE(restore(image.get(), a), nullptr) << limit;
        EXPECT_NE(denoise(image.get(), a), nullptr) << limit;
    }
}

TEST(DiffusionExports, NullPointersAreRefused) {
    const Handle image = photoHandle(5, 5, /*seed=*/5);
    Arguments noScheme;
    noScheme.scheme = nullptr;
    Arguments noFlow;
    noFlow.flow = nullptr;

    EXPECT_EQ(restore(nullptr, {}), nullptr);
    EXPECT_EQ(denoise(nullptr, {}), nullptr);
    EXPECT_EQ(restore(image.get(), noScheme), nullptr);
    EXPECT_EQ(denoise(image.get(), noScheme), nullptr);
    EXPECT_EQ(restore(image.get(), noFlow), nullptr);
    EXPECT_EQ(denoise(image.get(), noFlow), nullptr);
}

TEST(DiffusionExports, NumbersThatAreNotFiniteAreRefused) {
    const Handle image = photoHandle(5, 5, /*seed=*/5);
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {infinity, -infinity, std::nan("")}) {
        for (double Arguments::*field :
             {&Arguments::tau, &Arguments::sigma, &Arguments::contrast}) {
            Arguments a;
            a.*field = bad;

            EXPECT_EQ(restore(image.get(), a), nullptr) << bad;
            EXPECT_EQ(denoise(image.get(), a), nullptr) << bad;
        }
        Arguments a;
        a.fidelity = bad;
        EXPECT_EQ(denoise(image.get(), a), nullptr) << bad;
    }
}

TEST(DiffusionExports, GradientNormsOutsideTheirListAreRefused) {
    const Handle image = photoHandle(5, 5, /*seed=*/5);
    for (const int norm : {-1, 6, 100}) {
        Arguments a;
        a.gradientNormId = norm;

        EXPECT_EQ(restore(image.get(), a), nullptr) << norm;
        EXPECT_EQ(denoise(image.get(), a), nullptr) << norm;
    }
}

TEST(DiffusionExports, LinesOfOnePixelAreRefusedWhereTheSchemeNeedsTwo) {
    const Handle thin = photoHandle(1, 6, /*seed=*/6);
    const Handle flat = photoHandle(6, 1, /*seed=*/6);
    const Handle dot = photoHandle(1, 1, /*seed=*/6);
    for (const Named& scheme : kSchemes) {
        Arguments a;
        a.scheme = scheme.keyword;
        const bool refused = scheme.number != 0 && scheme.number != 1 && scheme.number != 20;
        for (const Handle* image : {&thin, &flat, &dot}) {
            EXPECT_EQ(restore(image->get(), a) == nullptr, refused) << scheme.keyword;
            EXPECT_EQ(denoise(image->get(), a) == nullptr, refused) << scheme.keyword;
        }
    }
}

TEST(DiffusionExports, TimeStepsWithTooManySubStepsAreRefused) {
    const Handle image = photoHandle(4, 4, /*seed=*/7);
    for (const char* scheme : {"ADI", "AMOS", "2DImplicit"}) {
        for (const double tau : {2147483648.0, -2147483648.0, 1e30, 1e300}) {
            Arguments a;
            a.scheme = scheme;
            a.tau = tau;

            EXPECT_EQ(restore(image.get(), a), nullptr) << scheme << tau;
            a.cflSubsteps = 0;
            EXPECT_NE(restore(image.get(), a), nullptr) << scheme << tau;
            EXPECT_EQ(denoise(image.get(), a), nullptr) << scheme << tau;
        }
    }
}

TEST(DiffusionExports, NegativeTimeStepsRun) {
    const Handle image = photoHandle(4, 4, /*seed=*/7);
    for (const Named& scheme : kSchemes) {
        for (const double tau : {-0.5, -1.0, -2.5}) {
            Arguments a;
            a.scheme = scheme.keyword;
            a.tau = tau;

            EXPECT_NE(restore(image.get(), a), nullptr) << scheme.keyword << tau;
        }
    }
}

TEST(DiffusionExports, NoIterationsGiveACopyOfTheSource) {
    const Handle image = photoHandle(6, 5, /*seed=*/8);
    for (const int iterations : {0, -7}) {
        Arguments a;
        a.iterations = iterations;

        EXPECT_EQ(pixelsOf(restore(image.get(), a)), pixelsOf(image));
        EXPECT_EQ(pixelsOf(denoise(image.get(), a)), pixelsOf(image));
    }
}

}  // namespace
}  // namespace orv
