#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "schemes/flows/diffusion_flow.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

constexpr std::pair<int, int> kSizes[] = {{2, 2}, {3, 2}, {3, 3}, {8, 5}, {5, 11}};

std::string traceOf(Scheme scheme, int kind, const std::pair<int, int>& size) {
    return std::string(nameOf(scheme)) + " kind " + std::to_string(kind) + " " +
           std::to_string(size.first) + "x" + std::to_string(size.second);
}

TEST(SchemeProperties, FlatPlaneStaysFlatUnderEverySchemeAndKind) {
    for (const auto& size : kSizes) {
        const FloatImage flat(size.first, size.second, 123.0f);
        for (const Scheme scheme : kAllSchemes) {
            for (const int kind : kFlowKinds) {
                SCOPED_TRACE(traceOf(scheme, kind, size));
                // Presmoothing leaves roundings, where the TV diffusivity of up to 100 makes the
                // explicit half steps unstable; a plane that is exactly flat has 1 instead.
                const double sigma = kind == 2 ? 0.0 : 1.0;
                DiffusionFlow flow(sigma, 10.0, kind, 0);

                const auto result =
                    makeScheme(scheme, &flow, {.tau = 3.5})->apply(flat, nullptr);

                // Rows sum to 1 up to a rounding; a few float solves add to it.
                EXPECT_LT(largestDifference(*result, DensePlane(flat)), 1e-3);
            }
        }
    }
}

TEST(SchemeProperties, FlatPlaneStaysFlatUnderADataTerm) {
    const FloatImage flat(6, 5, 123.0f);
    for (const Scheme scheme : kAllSchemes) {
        FidelityDiffusionFlow flow(0.0, 10.0, 0.3, 0, 0);
        const auto result = makeScheme(scheme, &flow, {.tau = 3.5})->apply(flat, nullptr);
        EXPECT_LT(largestDifference(*result, DensePlane(flat)), 1e-3) << nameOf(scheme);
    }
}

TEST(SchemeProperties, TauZeroReturnsTheSource) {
    for (const auto& size : kSizes) {
        const FloatImage plane = noisePlane(size.first, size.second, 1);
        for (const Scheme scheme : kAllSchemes) {
            for (const int kind : kFlowKinds) {
                SCOPED_TRACE(traceOf(scheme, kind, size));
                DiffusionFlow flow(1.0, 10.0, kind, 0);

                const auto result =
                    makeScheme(scheme, &flow, {.tau = 0.0})->apply(plane, nullptr);

                EXPECT_EQ(largestDifference(*result, DensePlane(plane)), 0.0);
            }
        }
    }
}

TEST(SchemeProperties, CornersNeverChange) {
    for (const auto& size : kSizes) {
        const auto [w, h] = size;
        const FloatImage plane = noisePlane(w, h, 2);
        for (const Scheme scheme : kAllSchemes) {
            for (const int kind : kFlowKinds) {
                SCOPED_TRACE(traceOf(scheme, kind, size));
                DiffusionFlow flow(0.5, 30.0, kind, 0);

                const auto result =
                    makeScheme(scheme, &flow, {.tau = 2.0})->apply(plane, nullptr);

                for (const int x : {0, w - 1}) {
                    for (const int y : {0, h - 1}) {
                        EXPECT_EQ(result->row(x)[y], plane.row(x)[y]);
                    }
                }
            }
        }
    }
}

TEST(SchemeProperties, MeanGreyLevelIsKept) {
    // The operators are symmetric with rows, hence columns, that sum to 0.
    const FloatImage plane = noisePlane(9, 8, 3);
    const auto mean = [](const FloatImage& p) {
        double sum = 0.0;
        for (std::size_t i = 0; i < p.sampleCount(); ++i) {
            sum += p.data()[i];
        }
        return sum / static_cast<double>(p.sampleCount());
    };
    for (const Scheme scheme : kAllSchemes) {
        DiffusionFlow flow(0.5, 30.0, 0, 0);
        const auto result = makeScheme(scheme, &flow, {.tau = 2.0})->apply(plane, nullptr);
        EXPECT_NEAR(mean(*result), mean(plane), 1e-4) << nameOf(scheme);
    }
}

TEST(SchemeProperties, ImplicitSchemesStayBetweenTheExtremesOfTheSource) {
    const FloatImage plane = noisePlane(9, 8, 4);
    const auto [low, high] =
        std::minmax_element(plane.data(), plane.data() + plane.sampleCount());
    for (const Scheme scheme : {Scheme::Lod, Scheme::Afi, Scheme::Aos, Scheme::Semi}) {
        for (const double tau : {0.5, 5.0, 100.0}) {
            SCOPED_TRACE(nameOf(scheme));
            DiffusionFlow flow(0.5, 30.0, 0, 0);
            const auto result = makeScheme(scheme, &flow, {.tau = tau})->apply(plane, nullptr);
            for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                // A rounding of the solves beyond the exact bound.
                EXPECT_GE(result->data()[i], *low - 1e-3f);
                EXPECT_LE(result->data()[i], *high + 1e-3f);
            }
        }
    }
}

TEST(SchemeProperties, EverySchemeSmoothsNoiseOfLowContrast) {
    const FloatImage plane = noisePlane(16, 16, 5, 100.0, 110.0);
    const auto variation = [](const FloatImage& p) {
        double sum = 0.0;
        for (int x = 1; x < p.width(); ++x) {
            for (int y = 0; y < p.height(); ++y) {
                sum += std::fabs(p.row(x)[y] - p.row(x - 1)[y]);
            }
        }
        return sum;
    };
    for (const Scheme scheme : kAllSchemes) {
        for (const int norm : {0, 1, 2, 3, 4, 5}) {
            DiffusionFlow flow(0.5, 30.0, 0, norm);
            const auto result = makeScheme(scheme, &flow, {.tau = 2.0})->apply(plane, nullptr);
            EXPECT_LT(variation(*result), 0.7 * variation(plane)) << nameOf(scheme) << norm;
        }
    }
}

}  // namespace
}  // namespace orv::test
