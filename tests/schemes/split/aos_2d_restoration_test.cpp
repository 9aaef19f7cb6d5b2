#include "schemes/split/aos_2d_restoration.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "images/float_image3.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

using Values = std::vector<int>;

Values valuesOfOnePlane(int w, int h, int low, int high) {
    const ProgressRecorder recorder(low, high);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    makeScheme(Scheme::Aos, &flow)->apply(noisePlane(w, h, 1), nullptr);
    return ProgressRecorder::values();
}

TEST(Aos2DRestoration, TellsTheCallbackEveryLineOfOnePlane) {
    EXPECT_EQ(valuesOfOnePlane(3, 2, 0, 100), (Values{0, 0, 25, 50, 50, 66, 83}));
    EXPECT_EQ(valuesOfOnePlane(2, 3, 0, 100), (Values{0, 0, 16, 33, 50, 50, 75}));
    EXPECT_EQ(valuesOfOnePlane(2, 2, 10, 17), (Values{10, 10, 11, 13, 13, 14}));
}

TEST(Aos2DRestoration, TellsTheCallbackThePlanesOfAColourImageInThirds) {
    const ProgressRecorder recorder(0, 100);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto scheme = makeScheme(Scheme::Aos, &flow);

    FloatPlanesOperator(scheme.get()).apply(noisePlanes(3, 2, 1), nullptr);

    EXPECT_EQ(ProgressRecorder::values(), (Values{0,  0,  8,  16, 16, 21, 27,    // 0 to 33
                                                  33, 33, 41, 49, 49, 54, 60,    // 33 to 66
                                                  66, 66, 74, 83, 83, 88, 94}))  // 66 to 100
        << "one report at the start, one a row, one in the middle, one a column";
}

TEST(Aos2DRestoration, LeavesTheProgressWindowAsItIs) {
    const ProgressRecorder recorder(30, 60);
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    makeScheme(Scheme::Aos, &flow)->apply(noisePlane(4, 4, 1), nullptr);

    EXPECT_EQ(progressWindow().progressLow, 30);
    EXPECT_EQ(progressWindow().progressHigh, 60);
    EXPECT_EQ(ProgressRecorder::values().size(), 10u);
}

TEST(Aos2DRestoration, IsTheOnlySchemeThatTellsTheCallback) {
    for (const Scheme scheme : kAllSchemes) {
        const ProgressRecorder recorder(0, 100);
        DiffusionFlow flow(0.0, 25.0, 0, 0);
        makeScheme(scheme, &flow)->apply(noisePlane(4, 4, 1), nullptr);
        EXPECT_EQ(ProgressRecorder::values().empty(), scheme != Scheme::Aos) << nameOf(scheme);
    }
}

TEST(Aos2DRestoration, RunsWithoutACallback) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const FloatImage plane = noisePlane(4, 4, 1);
    std::unique_ptr<FloatImage> silent = makeScheme(Scheme::Aos, &flow)->apply(plane, nullptr);
    const ProgressRecorder recorder(0, 100);

    EXPECT_TRUE(sameBits(*silent, *makeScheme(Scheme::Aos, &flow)->apply(plane, nullptr)));
}

/// One Gauss-Seidel sweep of (I - t A) u = b on a line, in double.
void sweep(const std::vector<double>& g, double t, const std::vector<double>& b,
           std::vector<double>& u) {
    const std::size_t n = g.size();
    for (std::size_t i = 0; i < n; ++i) {
        const double left = i > 0 ? t * (g[i - 1] + g[i]) / 2.0 : 0.0;
        const double right = i + 1 < n ? t * (g[i] + g[i + 1]) / 2.0 : 0.0;
        const double sum =
            (i > 0 ? left * u[i - 1] : 0.0) + (i + 1 < n ? right * u[i + 1] : 0.0);
        u[i] = (b[i] + sum) / (1.0 + left + right);
    }
}

/// The mean of one sweep along every row and along every column.
DensePlane sweptPlane(const DensePlane& u, const DensePlane& g, double t, bool startFromRhs) {
    DensePlane result(u.w, u.h);
    for (const bool alongX : {true, false}) {
        const int n = alongX ? u.w : u.h;
        const int lines = alongX ? u.h : u.w;
        std::vector<double> solution(static_cast<std::size_t>(n), 0.0);
        for (int line = 0; line < lines; ++line) {
            std::vector<double> b;
            std::vector<double> d;
            for (int i = 0; i < n; ++i) {
                b.push_back(alongX ? u.at(i, line) : u.at(line, i));
                d.push_back(alongX ? g.at(i, line) : g.at(line, i));
            }
            if (startFromRhs) {
                solution = b;
            }
            sweep(d, t, b, solution);
            for (int i = 0; i < n; ++i) {
                (alongX ? result.at(i, line) : result.at(line, i)) +=
                    solution[static_cast<std::size_t>(i)] / 2.0;
            }
        }
    }
    return result;
}

TEST(Aos2DRestoration, EachLineStartsFromTheSolutionOfTheLineBeforeAndTheFirstFromZeros) {
    const FloatImage plane = noisePlane(7, 6, 2);
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    // Solver 2 makes exactly one sweep, so that the start vector shows in the result.
    const auto result =
        makeScheme(Scheme::Aos, &flow, {.tau = 2.0, .solverId = 2, .solverIterations = 1})
            ->apply(plane, nullptr);

    const DensePlane u(plane);
    const DensePlane g(*flow.diffusivityPlane());
    EXPECT_LT(largestDifference(*result, sweptPlane(u, g, 4.0, false)), 1e-3);
    EXPECT_GT(largestDifference(*result, sweptPlane(u, g, 4.0, true)), 1.0);
}

}  // namespace
}  // namespace orv::test
