#include "studies/study_system.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "schemes/flows/diffusion_flow.h"
#include "studies/study_support.h"

namespace orv::test {
namespace {

constexpr int kThomas = 0;
constexpr int kGaussSeidel = 2;
constexpr int kCbb = 6;

struct Case {
    int solver;
    int limit;
};
constexpr Case kCases[] = {
    {kThomas, 50}, {kGaussSeidel, 1}, {kGaussSeidel, 3}, {kCbb, 2}, {kCbb, 50}};
constexpr std::pair<int, int> kSizes[] = {{2, 2}, {3, 7}, {9, 4}, {12, 13}};
constexpr std::pair<int, int> kLineSizes[] = {{1, 1}, {1, 6}, {6, 1}, {3, 7}, {12, 13}};

// One time step of restore, unclamped.
FloatImage schemeStep(const FloatImage& plane, const StudySettings& settings,
                      const Case& tried) {
    DiffusionFlow flow(settings.sigma, settings.contrast,
                       static_cast<int>(flowKindOf(settings.flow)), settings.gradientNormId);
    const auto scheme = makeScheme({settings.scheme, /*iterations=*/1, tried.limit,
                                    settings.tau, tried.solver, /*cflSubsteps=*/false},
                                   flow);
    return *scheme->apply(plane, nullptr);
}

std::vector<float> studied(const FloatImage& plane, const StudySettings& settings,
                           const Case& tried) {
    const auto solver = schemeSolver(tried.solver, tried.limit);
    return StudySystem(plane, settings).solve(*solver).samples;
}

FloatImage planeOf(const std::vector<float>& samples, int width, int height) {
    FloatImage plane(width, height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] = samples[static_cast<std::size_t>(x + width * y)];
        }
    }
    return plane;
}

// The columns of a line scheme by flow and solver: each of `from`, with the diffusivity of the
// source, started from itself or from the column before.
FloatImage solveColumns(const FloatImage& source, const FloatImage& from,
                        const StudySettings& settings, double step, bool startsFromBefore,
                        const Case& tried) {
    DiffusionFlow flow(settings.sigma, settings.contrast,
                       static_cast<int>(flowKindOf(settings.flow)), settings.gradientNormId);
    flow.update(source);
    const auto solver = schemeSolver(tried.solver, tried.limit);
    FloatImage result(source.width(), source.height());
    auto u = std::make_unique<RealVector>(source.height());
    for (int x = 0; x < source.width(); ++x) {
        const auto b = flow.lineVectorY(from, x, nullptr);
        const auto A = flow.implicitMatrixY(static_cast<float>(step), source, x, nullptr);
        if (!startsFromBefore) {
            u->CopyFrom(*b);
        }
        solver->Reset();
        u = solver->Solve(*A, *b, std::move(u));
        flow.storeLineY(*u, x, result);
    }
    return result;
}

bool equalBits(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && sameBits(a.data(), b.data(), a.size());
}

TEST(StudySystem, SolvesTheWholePlaneToTheBitsOf2DSemi) {
    for (const auto& [width, height] : kSizes) {
        for (const Case& tried : kCases) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << ", solver "
                                            << tried.solver << ", limit " << tried.limit);
            const FloatImage plane = studyPlane(width, height);
            const StudySettings settings = settingsOf(kScheme2DSemi, 1.7);

            const auto result = studied(plane, settings, tried);

            EXPECT_TRUE(equalBits(result, rowsOf(schemeStep(plane, settings, tried))));
        }
    }
}

TEST(StudySystem, RowsFollowedByColumnsAreTheBitsOfLod) {
    for (const auto& [width, height] : kLineSizes) {
        for (const Case& tried : kCases) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << ", solver "
                                            << tried.solver << ", limit " << tried.limit);
            const FloatImage plane = studyPlane(width, height);
            const StudySettings settings = settingsOf(kSchemeLod, 1.7);

            const FloatImage rows = planeOf(studied(plane, settings, tried), width, height);
            const FloatImage result = solveColumns(plane, rows, settings, settings.tau,
                                                   /*startsFromBefore=*/false, tried);

            EXPECT_TRUE(equalBits(rowsOf(result), rowsOf(schemeStep(plane, settings, tried))));
        }
    }
}

TEST(StudySystem, RowsAndColumnsHaveTheBitsOfAosAsTheirMean) {
    for (const auto& [width, height] : kLineSizes) {
        for (const Case& tried : kCases) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << ", solver "
                                            << tried.solver << ", limit " << tried.limit);
            const FloatImage plane = studyPlane(width, height);
            const StudySettings settings = settingsOf(kSchemeAos, 1.5);

            const FloatImage rows = planeOf(studied(plane, settings, tried), width, height);
            FloatImage mean = solveColumns(plane, plane, settings, 2.0 * settings.tau,
                                           /*startsFromBefore=*/true, tried);
            for (std::size_t i = 0; i < mean.sampleCount(); ++i) {
                mean.data()[i] = (mean.data()[i] + rows.data()[i]) * 0.5f;
            }

            EXPECT_TRUE(equalBits(rowsOf(mean), rowsOf(schemeStep(plane, settings, tried))));
        }
    }
}

TEST(StudySystem, CountsSystemsAndUnknowns) {
    const FloatImage plane = studyPlane(5, 4);

    const StudySystem whole(plane, settingsOf(kScheme2DSemi));
    const StudySystem rows(plane, settingsOf(kSchemeLod));

    EXPECT_EQ(whole.systems(), 1);
    EXPECT_EQ(whole.unknowns(), 20);
    EXPECT_EQ(rows.systems(), 4);
    EXPECT_EQ(rows.unknowns(), 20);
}

TEST(StudySystem, RightSideIsThePictureRowByRow) {
    const FloatImage plane = studyPlane(5, 4);
    for (const int scheme : {kScheme2DSemi, kSchemeLod, kSchemeAos}) {
        EXPECT_EQ(StudySystem(plane, settingsOf(scheme)).rightSide(), rowsOf(plane)) << scheme;
    }
}

// b - A u with A from the flow's matrices, element by element.
double denseResidual(const FloatImage& plane, const StudySettings& settings, double step,
                     const std::vector<float>& u) {
    DiffusionFlow flow(settings.sigma, settings.contrast, 0, settings.gradientNormId);
    flow.update(plane);
    const int width = plane.width();
    const std::vector<float> b = rowsOf(plane);
    const bool whole = settings.scheme == kScheme2DSemi;
    const int n = whole ? width * plane.height() : width;
    double sum = 0.0;
    for (int first = 0; first < width * plane.height(); first += n) {
        const auto A = whole ? flow.implicitFullMatrix(static_cast<float>(step), plane, nullptr)
                             : flow.implicitMatrixX(static_cast<float>(step), plane,
                                                    first / width, nullptr);
        for (int i = 0; i < n; ++i) {
            double r = b[static_cast<std::size_t>(first + i)];
            for (int j = 0; j < n; ++j) {
                r -= static_cast<double>(A->Get(j, i)) * u[static_cast<std::size_t>(first + j)];
            }
            sum += r * r;
        }
    }
    return std::sqrt(sum);
}

TEST(StudySystem, ResidualIsTheTrueOneOverAllSystems) {
    const FloatImage plane = studyPlane(6, 5);
    for (const auto& [scheme, step] :
         {std::pair{kScheme2DSemi, 1.0}, {kSchemeLod, 1.0}, {kSchemeAos, 2.0}}) {
        const StudySettings settings = settingsOf(scheme);
        const StudySystem system(plane, settings);
        const std::vector<float> u = rowsOf(noisePlane(6, 5, 9));

        const double expected = denseResidual(plane, settings, step, u);

        // The sums of 30 terms of about 100, in two orders.
        EXPECT_NEAR(system.residual(u), expected, 1e-10) << scheme;
        EXPECT_EQ(system.residual(std::vector<double>(u.begin(), u.end())), system.residual(u));
    }
}

TEST(StudySystem, CountsTheSystemsWhoseStoppingTestHeld) {
    const FloatImage plane = studyPlane(8, 6);
    const StudySystem system(plane, settingsOf(kSchemeLod));

    const StudySolution thomas = system.solve(*schemeSolver(kThomas, 50));
    const StudySolution cut = system.solve(*schemeSolver(kCbb, 1));
    const StudySolution whole = system.solve(*schemeSolver(kCbb, 50));

    EXPECT_EQ(thomas.converged, 0);
    EXPECT_LT(cut.converged, whole.converged);
    EXPECT_GT(whole.converged, 0);
    EXPECT_GE(whole.seconds, 0.0);
}

// Gives nothing, as a solver does whose factorisation has no result.
class EmptySolver final : public LinearSolver {
  public:
    std::unique_ptr<RealVector> Solve(const Matrix& /*A*/, const RealVector& /*b*/,
                                      bool /*rebuild*/,
                                      std::unique_ptr<RealVector> /*u*/) override {
        return nullptr;
    }
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override {
        return Solve(A, b, false, std::move(u));
    }
};

TEST(StudySystem, ASolverThatGivesNothingLeavesNoSamples) {
    EmptySolver solver;
    const StudySystem system(studyPlane(4, 4), settingsOf(kSchemeLod));
    EXPECT_TRUE(system.solve(solver).samples.empty());
}

}  // namespace
}  // namespace orv::test
