#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "base/cpu_features.h"
#include "exports/progress_window.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "schemes/full/heat_flow_operator.h"
#include "schemes/kernels/line_kernels.h"
#include "schemes/split/afi_2d_restoration.h"
#include "schemes/split/amos_2d_restoration.h"
#include "schemes/split/aos_2d_restoration.h"
#include "schemes/split/cfl_adi_2d_restoration.h"
#include "schemes/split/lod_2d_restoration.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;

enum class Scheme { Lod, Afi, Adi, Aos, Amos };

constexpr Scheme kSchemes[] = {Scheme::Lod, Scheme::Afi, Scheme::Adi, Scheme::Aos,
                               Scheme::Amos};
constexpr int kKinds[] = {0, 1, 2, 10, 11, 12};

struct Case {
    Scheme scheme = Scheme::Aos;
    double tau = 2.5;
    double sigma = 0.0;
    double contrast = 9.0;
    int kind = 0;
    int norm = 0;
    bool fidelity = false;
    bool cflSubsteps = true;
    int iterations = 1;
    bool updateEachStep = true;
};

struct Size {
    int width;
    int height;
};

std::unique_ptr<Splitted2DRestoration> makeScheme(const Case& s, Flow* flow) {
    const int n = s.iterations;
    const bool each = s.updateEachStep;
    switch (s.scheme) {
        case Scheme::Lod:
            return std::make_unique<Lod2DRestoration>(0, n, 1, s.tau, flow, true, each);
        case Scheme::Afi:
            return std::make_unique<Afi2DRestoration>(0, n, 1, s.tau, flow, true, each);
        case Scheme::Adi:
            return std::make_unique<CflAdi2DRestoration>(0, n, 1, s.tau, flow, s.cflSubsteps,
                                                         true, each);
        case Scheme::Aos:
            return std::make_unique<Aos2DRestoration>(0, n, 1, s.tau, flow, true, each);
        case Scheme::Amos:
            break;
    }
    return std::make_unique<Amos2DRestoration>(0, n, 1, s.tau, flow, s.cflSubsteps, true, each);
}

std::unique_ptr<DiffusionFlow> makeFlow(const Case& s) {
    if (s.fidelity) {
        return std::make_unique<FidelityDiffusionFlow>(s.sigma, s.contrast, /*fidelity=*/0.3,
                                                       s.kind, s.norm);
    }
    return std::make_unique<DiffusionFlow>(s.sigma, s.contrast, s.kind, s.norm);
}

// The results of one scheme object on the given planes, one after the other.
std::vector<std::unique_ptr<FloatImage>> run(const Case& given, bool plain,
                                             const std::vector<const FloatImage*>& planes,
                                             DiffusionFlow* otherFlow = nullptr) {
    const std::unique_ptr<DiffusionFlow> ownFlow = makeFlow(given);
    DiffusionFlow* const flow = otherFlow != nullptr ? otherFlow : ownFlow.get();
    const std::unique_ptr<Splitted2DRestoration> scheme = makeScheme(given, flow);
    flow->setPlainPath(plain);
    scheme->setPlainPath(plain);
    std::vector<std::unique_ptr<FloatImage>> results;
    for (const FloatImage* plane : planes) {
        results.push_back(scheme->apply(*plane, nullptr));
    }
    return results;
}

// Which NaN an operation gives is not fixed by the order of evaluation; that it is one, is.
bool sameSamples(const FloatImage& a, const FloatImage& b) {
    for (std::size_t i = 0; i < a.sampleCount(); ++i) {
        const float x = a.data()[i];
        const float y = b.data()[i];
        if (!(std::isnan(x) && std::isnan(y)) && !test::sameBits(&x, &y, 1)) {
            return false;
        }
    }
    return a.width() == b.width() && a.height() == b.height();
}

bool legal(Scheme scheme, Size size) {
    const bool hasProducts = scheme == Scheme::Adi || scheme == Scheme::Amos;
    return !hasProducts || (size.width > 1 && size.height > 1);
}

// Every kernel target of this machine against the line by line path.
class SchemeKernels : public testing::TestWithParam<KernelTarget> {
  protected:
    void SetUp() override {
        if (!isAvailable(GetParam())) {
            GTEST_SKIP() << nameOf(GetParam()) << " is not available here";
        }
        limitKernelTarget(GetParam());
    }
    void TearDown() override { limitKernelTarget(KernelTarget::Avx512); }

    void expectPlainBits(const Case& given, const std::vector<const FloatImage*>& planes) {
        const auto expected = run(given, /*plain=*/true, planes);

        const auto actual = run(given, /*plain=*/false, planes);

        for (std::size_t i = 0; i < planes.size(); ++i) {
            EXPECT_TRUE(sameSamples(*expected[i], *actual[i]))
                << "plane " << i << ", scheme " << static_cast<int>(given.scheme) << ", "
                << planes[i]->width() << " x " << planes[i]->height() << ", kind " << given.kind
                << ", norm " << given.norm << ", fidelity " << given.fidelity;
        }
    }

    void expectPlainBits(const Case& given, const FloatImage& plane) {
        expectPlainBits(given, std::vector<const FloatImage*>{&plane});
    }
};

TEST_P(SchemeKernels, EverySchemeHasThePlainBitsAtEverySize) {
    const Size sizes[] = {{1, 1},   {1, 9},   {9, 1},   {2, 2},   {2, 7},   {3, 3},
                          {7, 5},   {8, 8},   {16, 16}, {17, 33}, {31, 15}, {64, 64},
                          {65, 40}, {40, 65}, {97, 83}, {3, 200}, {200, 3}, {130, 128}};
    for (const Size size : sizes) {
        const FloatImage plane = noisePlane(size.width, size.height, /*seed=*/5);
        for (const Scheme scheme : kSchemes) {
            for (const bool fidelity : {false, true}) {
                if (legal(scheme, size)) {
                    expectPlainBits({.scheme = scheme, .fidelity = fidelity}, plane);
                }
            }
        }
    }
}

TEST_P(SchemeKernels, EveryDiffusivityHasThePlainBits) {
    const FloatImage plane = noisePlane(61, 45, /*seed=*/6, 100.0, 130.0);
    for (const int kind : kKinds) {
        for (int norm = 0; norm < 6; ++norm) {
            expectPlainBits({.kind = kind, .norm = norm}, plane);
        }
    }
}

// Integers, as bytes give them, and a contrast that makes simple quotients.
TEST_P(SchemeKernels, DiffusivityOfIntegersHasThePlainBits) {
    FloatImage plane = noisePlane(70, 600, /*seed=*/7, 0.0, 24.0);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = std::floor(plane.data()[i]);
    }
    for (const double contrast : {1.0, 2.0, 3.0, 10.0, 0.001, 1e6}) {
        for (const int kind : kKinds) {
            expectPlainBits({.contrast = contrast, .kind = kind}, plane);
        }
    }
}

// The diffusivity by itself, before a step hides the digits of small values.
TEST_P(SchemeKernels, DiffusivityPlanesHaveThePlainBitsFromZeroToOne) {
    FloatImage plane = noisePlane(40, 700, /*seed=*/19);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const int exponent = static_cast<int>(i % 97) / 4 - 12;
        plane.data()[i] = std::ldexp(plane.data()[i], exponent);
    }
    for (const int kind : kKinds) {
        for (int norm = 0; norm < 6; ++norm) {
            DiffusionFlow flow(/*sigma=*/0.0, /*contrast=*/9.0, kind, norm);
            flow.setPlainPath(true);
            const auto expected = flow.computeDiffusivity(plane, nullptr);

            flow.setPlainPath(false);
            const auto actual = flow.computeDiffusivity(plane, nullptr);

            EXPECT_TRUE(test::sameBits(*expected, *actual)) << kind << ", norm " << norm;
        }
    }
}

// g = 1 / (1 + n) lies between two floats, where half of the quick quotient's errors round the
// other way.
TEST_P(SchemeKernels, DiffusivityHalfwayBetweenTwoFloatsHasThePlainBits) {
    FloatImage plane(3, 4000);
    for (int y = 0; y < 4000; ++y) {
        // n = dx^2 with dx = u / 2; 1 / (1 + n) = (2 k + 1) / 2^25 needs dx = sqrt(1 / g - 1).
        const double g = (2.0 * (9000000 + 1800 * y) + 1.0) / 33554432.0;
        plane.row(2)[y] = static_cast<float>(2.0 * std::sqrt(1.0 / g - 1.0));
    }
    expectPlainBits({.contrast = 1.0}, plane);
}

TEST_P(SchemeKernels, ContrastOfZeroHasThePlainBits) {
    FloatImage plane = noisePlane(40, 40, /*seed=*/8);
    for (int y = 0; y < 20; ++y) {
        std::fill_n(plane.row(y), 40, 7.0f);
    }
    for (const int kind : kKinds) {
        expectPlainBits({.contrast = 0.0, .kind = kind}, plane);
    }
}

TEST_P(SchemeKernels, NanAndInfinityTravelAsOnThePlainPath) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), infinity, -infinity,
                         std::numeric_limits<float>::max(),       1e-42f,   -0.0f};
    for (const float value : odd) {
        FloatImage plane = noisePlane(50, 70, /*seed=*/9);
        plane.row(20)[30] = value;
        plane.row(0)[3] = value;
        plane.row(49)[69] = value;
        for (const Scheme scheme : kSchemes) {
            for (int norm = 0; norm < 6; ++norm) {
                expectPlainBits({.scheme = scheme, .norm = norm, .fidelity = norm % 2 == 1},
                                plane);
            }
        }
        for (const int kind : kKinds) {
            expectPlainBits({.kind = kind}, plane);
        }
    }
}

TEST_P(SchemeKernels, EveryStepSizeHasThePlainBits) {
    const FloatImage plane = noisePlane(37, 52, /*seed=*/10);
    // From -1 on, the sub-steps count 0 and less.
    for (const double tau : {0.0, 0.25, 1.0, 7.75, 1e4, -0.4, -1.0, -1.5, -3.25, 1e-40}) {
        for (const Scheme scheme : kSchemes) {
            for (const bool cflSubsteps : {false, true}) {
                if (tau < 100.0 || !cflSubsteps) {
                    expectPlainBits({.scheme = scheme, .tau = tau, .cflSubsteps = cflSubsteps},
                                    plane);
                }
            }
        }
    }
}

TEST_P(SchemeKernels, PresmoothedPlanesOfOneSchemeHaveThePlainBits) {
    const FloatImage red = noisePlane(83, 70, /*seed=*/11);
    const FloatImage green = noisePlane(83, 70, /*seed=*/12);
    for (const Scheme scheme : kSchemes) {
        for (const double sigma : {0.05, 0.051, 1.0, 4.0}) {
            expectPlainBits({.scheme = scheme, .sigma = sigma}, {&red, &green});
        }
    }
}

TEST_P(SchemeKernels, RepeatedStepsHaveThePlainBits) {
    const FloatImage red = noisePlane(45, 70, /*seed=*/16);
    const FloatImage green = noisePlane(45, 70, /*seed=*/17);
    for (const Scheme scheme : kSchemes) {
        for (const int iterations : {1, 3}) {
            for (const bool updateEachStep : {false, true}) {
                expectPlainBits({.scheme = scheme,
                                 .sigma = 0.8,
                                 .fidelity = true,
                                 .iterations = iterations,
                                 .updateEachStep = updateEachStep},
                                {&red, &green});
            }
        }
    }
}

// Diffuses along y alone, which the kernels know nothing of.
class ColumnFlow final : public DiffusionFlow {
  public:
    using DiffusionFlow::DiffusionFlow;
    std::unique_ptr<Matrix> lineMatrixX(float, const FloatImage& plane, int y,
                                        std::unique_ptr<Matrix> matrix) override {
        return DiffusionFlow::lineMatrixX(0.0f, plane, y, std::move(matrix));
    }
};

TEST_P(SchemeKernels, MatricesOfADerivedFlowAreHeard) {
    const FloatImage plane = noisePlane(40, 33, /*seed=*/18);
    for (const Scheme scheme : kSchemes) {
        const Case given = {.scheme = scheme};
        ColumnFlow flow(given.sigma, given.contrast, given.kind, given.norm);
        const auto expected = run(given, /*plain=*/true, {&plane}, &flow);

        const auto actual = run(given, /*plain=*/false, {&plane}, &flow);

        EXPECT_TRUE(sameSamples(*expected[0], *actual[0])) << static_cast<int>(scheme);
        EXPECT_FALSE(sameSamples(*expected[0], *run(given, true, {&plane})[0]));
    }
}

// Lines so long that the strips become narrower.
TEST_P(SchemeKernels, LongLinesHaveThePlainBits) {
    for (const Size size : {Size{7000, 37}, Size{37, 7000}, Size{14000, 20}}) {
        const FloatImage plane = noisePlane(size.width, size.height, /*seed=*/13);
        expectPlainBits({.scheme = Scheme::Aos}, plane);
        expectPlainBits({.scheme = Scheme::Amos, .fidelity = true}, plane);
    }
}

TEST_P(SchemeKernels, HeatFlowHasThePlainBits) {
    for (const Size size :
         {Size{2, 2}, Size{1, 5}, Size{5, 1}, Size{90, 71}, Size{128, 64}, Size{66, 140}}) {
        const FloatImage plane = noisePlane(size.width, size.height, /*seed=*/14);
        HeatFlowOperator plain(0, 2, 1, 0.7f, 0.0001f);
        HeatFlowOperator quick(0, 2, 1, 0.7f, 0.0001f);
        plain.setPlainPath(true);

        const auto expected = plain.apply(plane, nullptr);
        const auto actual = quick.apply(plane, nullptr);

        EXPECT_TRUE(test::sameBits(*expected, *actual)) << size.width << " x " << size.height;
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, SchemeKernels,
                         testing::Values(KernelTarget::Generic, KernelTarget::Avx2,
                                         KernelTarget::Avx512),
                         [](const testing::TestParamInfo<KernelTarget>& target) {
                             return std::string(nameOf(target.param));
                         });

std::vector<int> hostValues;

void ORV_PROGRESS_CALL recordValue(int value) {
    hostValues.push_back(value);
}

std::vector<int> aosHostValues(bool plain, const FloatImage& plane) {
    hostValues.clear();
    const ProgressWindow before = progressWindow();
    progressWindow() = {recordValue, 10, 71};
    run({.scheme = Scheme::Aos}, plain, {&plane});
    progressWindow() = before;
    return hostValues;
}

TEST(SchemeKernels, AosTellsTheHostTheSameValuesAsThePlainPath) {
    const FloatImage plane = noisePlane(77, 130, /*seed=*/15);

    const std::vector<int> expected = aosHostValues(/*plain=*/true, plane);

    EXPECT_EQ(expected.size(), 77U + 130U + 2U);
    EXPECT_EQ(expected, aosHostValues(/*plain=*/false, plane));
}

TEST(SchemeKernels, StripsLeaveTheSamplesBesideThemAlone) {
    constexpr float kGuard = 12345.0f;
    const LineKernels& kernels = lineKernels();
    for (const int columns : {1, 7, 8, 16, 23}) {
        std::vector<float> plane(static_cast<std::size_t>(columns) * 19U + 2U, kGuard);
        std::vector<float> strip(19U * 32U + 2U, kGuard);
        for (std::size_t i = 1; i + 1 < plane.size(); ++i) {
            plane[i] = static_cast<float>(i);
        }
        const std::vector<float> before = plane;

        kernels.gatherColumns(plane.data() + 1, 19, columns, 19, strip.data() + 1, 32);
        kernels.scatterColumns(strip.data() + 1, 32, columns, 19, plane.data() + 1, 19, false);

        EXPECT_EQ(plane, before) << columns;
        EXPECT_EQ(strip.front(), kGuard);
        EXPECT_EQ(strip.back(), kGuard);
        EXPECT_EQ(strip[1U + 18U * 32U + static_cast<std::size_t>(columns)], 0.0f);
    }
}

}  // namespace
}  // namespace orv
