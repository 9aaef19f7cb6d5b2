#include "schemes/flows/diffusion_flow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "algebra/matrix.h"
#include "schemes/gradient_norms/gradient_norm_list.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

/// Without presmoothing.
constexpr double kNoSigma = 0.0;
constexpr double kContrast = 20.0;

std::unique_ptr<DiffusionFlow> updatedFlow(const FloatImage& plane, int kind = 0,
                                           double sigma = kNoSigma) {
    auto flow = std::make_unique<DiffusionFlow>(sigma, kContrast, kind, 0);
    flow->update(plane);
    return flow;
}

TEST(DiffusionFlow, FlatPlaneHasDiffusivityOneInsideAndZeroOnTheBorder) {
    const FloatImage flat(6, 5, 77.0f);
    for (const int kind : kFlowKinds) {
        for (const double sigma : {0.0, 1.5}) {
            SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(sigma));
            // With presmoothing the plane stays flat up to rounding alone.
            const auto flow = updatedFlow(flat, kind, sigma);

            const FloatImage& g = *flow->diffusivityPlane();
            for (int x = 0; x < 6; ++x) {
                for (int y = 0; y < 5; ++y) {
                    const bool border = x == 0 || x == 5 || y == 0 || y == 4;
                    if (border || sigma == 0.0) {
                        // TV takes n <= 0 apart, so that g is 1 and not 100.
                        EXPECT_EQ(g.row(x)[y], border ? 0.0f : 1.0f);
                    }
                }
            }
        }
    }
}

/// The diffusivity of every kind and norm against the formula, on one path.
void expectFormula(bool plainPath) {
    const FloatImage plane = noisePlane(7, 6, 1);
    for (const int kind : kFlowKinds) {
        for (int norm = 0; norm < 6; ++norm) {
            SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(norm));
            DiffusionFlow flow(kNoSigma, kContrast, kind, norm);
            flow.setPlainPath(plainPath);

            const auto g = flow.computeDiffusivity(plane, nullptr);

            const auto expected = GradientNormList(8).create(norm);
            expected->setImage(plane);
            for (int x = 1; x < 6; ++x) {
                for (int y = 1; y < 5; ++y) {
                    const double n = expected->interiorNorm(x, y);
                    const double value =
                        n > 0.0 ? diffusivity(static_cast<FlowKind>(kind), n / 400.0) : 1.0;
                    EXPECT_EQ(g->row(x)[y], static_cast<float>(value));
                }
            }
        }
    }
}

TEST(DiffusionFlow, DiffusivityIsTheFormulaOfTheSquaredNormOverTheSquaredContrast) {
    expectFormula(/*plainPath=*/false);
}

TEST(DiffusionFlow, PlainPathFollowsTheSameFormula) {
    expectFormula(/*plainPath=*/true);
}

TEST(DiffusionFlow, GivenTargetIsRefilledWholeAndHandedBack) {
    const FloatImage plane = noisePlane(5, 5, 2);
    DiffusionFlow flow(kNoSigma, kContrast, 0, 0);
    auto target = std::make_unique<FloatImage>(5, 5, 9.0f);
    const FloatImage* const given = target.get();

    const auto g = flow.computeDiffusivity(plane, std::move(target));

    EXPECT_EQ(g.get(), given);
    EXPECT_TRUE(sameBits(*g, *flow.computeDiffusivity(plane, nullptr)));
}

TEST(DiffusionFlow, SquaresTheContrastInFloat) {
    const DiffusionFlow flow(0.0, 0.1, 0, 0);

    EXPECT_EQ(flow.contrastSquared(), 0.1f * 0.1f);
}

TEST(DiffusionFlow, SigmaOfFiveHundredthsMeansNoPresmoothing) {
    const FloatImage plane = noisePlane(6, 6, 3);
    const auto none = updatedFlow(plane, 0, 0.05);
    const auto some = updatedFlow(plane, 0, 0.0501);

    EXPECT_EQ(none->smoothed(), nullptr);
    ASSERT_NE(some->smoothed(), nullptr);
    EXPECT_FALSE(sameBits(*some->smoothed(), plane));
    EXPECT_TRUE(sameBits(*none->diffusivityPlane(), *updatedFlow(plane)->diffusivityPlane()));
}

TEST(DiffusionFlow, PresmoothsByHeatFlowOfHalfTheSquaredSigma) {
    const FloatImage plane = noisePlane(6, 7, 4);
    const auto flow = updatedFlow(plane, 0, 2.0);

    const auto smoothed = HeatFlowOperator(0, 1, 1, 2.0f, 0.0001f).apply(plane, nullptr);

    EXPECT_TRUE(sameBits(*flow->smoothed(), *smoothed));
    DiffusionFlow plain(kNoSigma, kContrast, 0, 0);
    EXPECT_TRUE(
        sameBits(*flow->diffusivityPlane(), *plain.computeDiffusivity(*smoothed, nullptr)));
}

TEST(Quirk, HeatFlowReuse) {
    const FloatImage first = noisePlane(6, 7, 5);
    const FloatImage second = noisePlane(6, 7, 6);
    DiffusionFlow flow(1.0, kContrast, 0, 0);
    flow.update(first);
    const FloatImage once(*flow.smoothed());

    flow.update(second);

    // The second plane is ignored: the first one has been smoothed twice.
    HeatFlowOperator heat(0, 1, 1, 0.5f, 0.0001f);
    EXPECT_TRUE(sameBits(*flow.smoothed(), *heat.apply(second, once.clone())));
    EXPECT_FALSE(sameBits(*flow.smoothed(), *heat.apply(second, nullptr)));
}

/// The entry for p beside q, and the negated sum on the diagonal, against the formula.
void expectOperator(const Matrix& M, const DenseMatrix& A, double tau) {
    ASSERT_EQ(M.Rows(), static_cast<int>(A.size()));
    for (int row = 0; row < M.Rows(); ++row) {
        double sum = 0.0;
        for (int column = 0; column < M.Rows(); ++column) {
            const double expected =
                tau * A[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
            // Two float roundings of values below 4 tau.
            EXPECT_NEAR(M.Get(column, row), expected, 1e-6 * tau);
            sum += M.Get(column, row);
        }
        EXPECT_NEAR(sum, 0.0, 1e-6 * tau) << "row " << row;
    }
}

DensePlane lineOf(const FloatImage& g, int fixed, bool alongX) {
    DensePlane line(alongX ? g.width() : g.height(), 1);
    for (int i = 0; i < line.w; ++i) {
        line.at(i, 0) = alongX ? g.row(i)[fixed] : g.row(fixed)[i];
    }
    return line;
}

TEST(DiffusionFlow, RowsOfLineAndFullMatricesSumToZeroAndHoldTheMeanDiffusivities) {
    for (const auto& [w, h] : {std::pair{2, 2}, std::pair{3, 5}, std::pair{7, 4}}) {
        for (const int kind : kFlowKinds) {
            const FloatImage plane = noisePlane(w, h, 7);
            const auto flow = updatedFlow(plane, kind);
            const FloatImage& g = *flow->diffusivityPlane();
            for (int y = 0; y < h; ++y) {
                expectOperator(*flow->lineMatrixX(2.5f, plane, y, nullptr),
                               denseOperator(lineOf(g, y, true), true, false), 2.5);
            }
            for (int x = 0; x < w; ++x) {
                expectOperator(*flow->lineMatrixY(2.5f, plane, x, nullptr),
                               denseOperator(lineOf(g, x, false), true, false), 2.5);
            }
            expectOperator(*flow->fullMatrix(2.5f, plane, nullptr),
                           denseOperator(DensePlane(g), true, true), 2.5);
        }
    }
}

bool sameEntries(const Matrix& a, const Matrix& b) {
    for (int i = 0; i < a.Rows(); ++i) {
        for (int j = 0; j < a.Rows(); ++j) {
            if (a.Get(i, j) != b.Get(i, j)) {
                return false;
            }
        }
    }
    return a.Rows() == b.Rows();
}

TEST(DiffusionFlow, RefillsAGivenMatrixWithWhatANewOneWouldHold) {
    const FloatImage plane = noisePlane(6, 5, 8);
    const auto flow = updatedFlow(plane);

    auto line = flow->implicitMatrixX(1.0f, plane, 1, nullptr);
    const Matrix* const given = line.get();
    line = flow->lineMatrixX(2.0f, plane, 2, std::move(line));
    auto full = flow->implicitFullMatrix(1.0f, plane, nullptr);
    full = flow->fullMatrix(2.0f, plane, std::move(full));

    EXPECT_EQ(line.get(), given);
    EXPECT_TRUE(sameEntries(*line, *flow->lineMatrixX(2.0f, plane, 2, nullptr)));
    EXPECT_TRUE(sameEntries(*full, *flow->fullMatrix(2.0f, plane, nullptr)));
}

TEST(DiffusionFlow, BorderLinesGiveTheIdentity) {
    const FloatImage plane = noisePlane(6, 5, 9);
    const auto flow = updatedFlow(plane);

    for (const int y : {0, 4}) {
        const auto m = flow->implicitMatrixX(3.0f, plane, y, nullptr);
        for (int i = 0; i < 6; ++i) {
            for (int j = 0; j < 6; ++j) {
                EXPECT_EQ(m->Get(i, j), i == j ? 1.0f : 0.0f);
            }
        }
    }
}

TEST(DiffusionFlow, LineBesideTheBorderCarriesHalfTheDiffusivityAcrossThatStep) {
    const FloatImage flat(5, 5, 10.0f);
    const auto flow = updatedFlow(flat);

    const auto m = flow->lineMatrixX(2.0f, flat, 2, nullptr);

    EXPECT_EQ(m->Get(1, 0), 1.0f);
    EXPECT_EQ(m->Get(2, 1), 2.0f);
    EXPECT_EQ(m->Get(0, 0), -1.0f);
    EXPECT_EQ(m->Get(1, 1), -3.0f);
}

TEST(DiffusionFlow, PlanesOfOneRowOrColumnGiveMatricesOfZeros) {
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{1, 4}, std::pair{4, 1}}) {
        const FloatImage plane = noisePlane(w, h, 10);
        const auto flow = updatedFlow(plane, 0, 1.0);

        const auto full = flow->fullMatrix(1.0f, plane, nullptr);
        const auto lineX = flow->lineMatrixX(1.0f, plane, 0, nullptr);

        EXPECT_EQ(full->Rows(), w * h);
        EXPECT_EQ(full->Get(0, 0), 0.0f);
        EXPECT_EQ(lineX->Rows(), w);
        EXPECT_EQ(lineX->Get(0, 0), 0.0f);
    }
}

}  // namespace
}  // namespace orv::test
