#include "operators/diffusion/scheme_table.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <typeinfo>

#include "schemes/flows/diffusion_flow.h"
#include "schemes/full/full_2d_implicit_restoration.h"
#include "schemes/full/full_2d_semi_implicit_restoration.h"
#include "schemes/split/afi_2d_restoration.h"
#include "schemes/split/amos_2d_restoration.h"
#include "schemes/split/aos_2d_restoration.h"
#include "schemes/split/cfl_adi_2d_restoration.h"
#include "schemes/split/lod_2d_restoration.h"

namespace orv {
namespace {

constexpr int kAllSchemes[] = {kSchemeLod,  kSchemeAfi,    kSchemeAdi,       kSchemeAos,
                               kSchemeAmos, kScheme2DSemi, kScheme2DImplicit};

template <typename Scheme>
bool makes(int number) {
    DiffusionFlow flow(0.0, 10.0, 0, 0);
    const auto scheme = makeScheme({number, 1, 5, 1.0, 0, true}, flow);
    return dynamic_cast<Scheme*>(scheme.get()) != nullptr;
}

TEST(SchemeTable, MakesTheSchemeOfEachNumber) {
    EXPECT_TRUE(makes<Lod2DRestoration>(0));
    EXPECT_TRUE(makes<Afi2DRestoration>(1));
    EXPECT_TRUE(makes<CflAdi2DRestoration>(10));
    EXPECT_TRUE(makes<Aos2DRestoration>(20));
    EXPECT_TRUE(makes<Amos2DRestoration>(21));
    EXPECT_TRUE(makes<Full2DSemiImplicitRestoration>(30));
    EXPECT_TRUE(makes<Full2DImplicitRestoration>(40));
}

TEST(SchemeTable, UnknownNumbersGiveNull) {
    DiffusionFlow flow(0.0, 10.0, 0, 0);
    for (const int number : {-1, 2, 11, 22, 31, 41}) {
        EXPECT_EQ(makeScheme({number, 1, 5, 1.0, 0, true}, flow), nullptr) << number;
    }
}

TEST(SchemeTable, SchemesThatCoupleNeighboursNeedTwoSamples) {
    for (const int scheme : {kSchemeAdi, kSchemeAmos, kScheme2DSemi, kScheme2DImplicit}) {
        EXPECT_FALSE(schemeFitsSize(scheme, 1, 9)) << scheme;
        EXPECT_FALSE(schemeFitsSize(scheme, 9, 1)) << scheme;
        EXPECT_TRUE(schemeFitsSize(scheme, 2, 2)) << scheme;
    }
    for (const int scheme : {kSchemeLod, kSchemeAfi, kSchemeAos}) {
        EXPECT_TRUE(schemeFitsSize(scheme, 1, 1)) << scheme;
        EXPECT_FALSE(schemeFitsSize(scheme, 0, 1)) << scheme;
    }
}

TEST(SchemeTable, UnsplitSchemesCountSamplesInAnInt) {
    EXPECT_TRUE(schemeFitsSize(kScheme2DSemi, 46340, 46340));
    EXPECT_FALSE(schemeFitsSize(kScheme2DSemi, 46341, 46341));
    EXPECT_TRUE(schemeFitsSize(kSchemeAdi, 46341, 46341));
}

TEST(SchemeTable, IncompleteLuWorksOnUnsplitSchemesAlone) {
    for (const int scheme : kAllSchemes) {
        const bool unsplit = scheme == kScheme2DSemi || scheme == kScheme2DImplicit;
        EXPECT_EQ(solverFitsScheme(41, scheme), unsplit) << scheme;
        for (int id = 0; id < 41; ++id) {
            EXPECT_TRUE(solverFitsScheme(id, scheme)) << id << " " << scheme;
        }
    }
}

TEST(SchemeTable, SubStepCountHasToFitAnInt) {
    // With half = tau / 2 exact, k = 1 + trunc(tau). The largest float below 2^31:
    const double largest = 2147483520.0;
    const double infinity = std::numeric_limits<double>::infinity();
    for (const int scheme : {kSchemeAdi, kSchemeAmos, kScheme2DImplicit}) {
        EXPECT_TRUE(subStepsFit(scheme, 2.5, true)) << scheme;
        EXPECT_TRUE(subStepsFit(scheme, -2.5, true)) << scheme;
        EXPECT_TRUE(subStepsFit(scheme, largest, true)) << scheme;
        EXPECT_FALSE(subStepsFit(scheme, 2147483648.0, true)) << scheme;
        EXPECT_TRUE(subStepsFit(scheme, -largest, true)) << scheme;
        EXPECT_FALSE(subStepsFit(scheme, -2147483648.0, true)) << scheme;
        EXPECT_FALSE(subStepsFit(scheme, 1e300, true)) << scheme;
        EXPECT_FALSE(subStepsFit(scheme, infinity, true)) << scheme;
        EXPECT_FALSE(subStepsFit(scheme, std::nan(""), true)) << scheme;
        EXPECT_TRUE(subStepsFit(scheme, 1e300, false)) << scheme;
    }
    for (const int scheme : {kSchemeLod, kSchemeAfi, kSchemeAos, kScheme2DSemi}) {
        EXPECT_TRUE(subStepsFit(scheme, 1e300, true)) << scheme;
    }
}

}  // namespace
}  // namespace orv
