#include "algebra/preconditioners/explicit_ssor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/preconditioners/explicit_preconditioned_product.h"
#include "algebra/preconditioners/full_of.h"
#include "algebra/storage/band_matrix.h"
#include "algebra/storage/diagonal_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "base/rounding.h"
#include "base/runtime_random.h"
#include "base/text_output.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::elementsOf;
using test::expectNear;
using test::expectSameBits;
using test::vectorOf;
using test::wavyVector;

FullMatrix small() {
    return test::fullOf(4, 1, 2, 8);
}

// lower diagonal upper x in double, with the factors straight from the definition.
std::vector<double> ssorProduct(const Matrix& A, double omega, const RealVector& x) {
    const int n = A.Rows();
    std::vector<double> y(static_cast<std::size_t>(n));
    std::vector<double> z(static_cast<std::size_t>(n));
    for (int j = 0; j < n; ++j) {
        const std::size_t row = static_cast<std::size_t>(j);
        y[row] = A.Get(j, j) / omega * double{x[j]};
        for (int i = j + 1; i < n; ++i) {
            y[row] += double{A.Get(i, j)} * double{x[i]};
        }
        y[row] *= omega / ((2.0 - omega) * A.Get(j, j));
    }
    for (int j = 0; j < n; ++j) {
        const std::size_t row = static_cast<std::size_t>(j);
        z[row] = A.Get(j, j) / omega * y[row];
        for (int i = 0; i < j; ++i) {
            z[row] += double{A.Get(i, j)} * y[static_cast<std::size_t>(i)];
        }
    }
    return z;
}

TEST(ExplicitSsor, SolvesThroughTheThreeFactors) {
    // work = (4 / 4, (10 - 2) / 8) = (1, 1), over (1/4, 1/8) = (4, 8); x1 = 8 / 8, x0 = 3 / 4.
    const ExplicitSsor M(small(), 1.0);

    const auto x = M.Solve(vectorOf({4, 10}), nullptr);

    EXPECT_EQ(elementsOf(*x), (std::vector<float>{0.75F, 1.0F}));
}

TEST(ExplicitSsor, SolvesTheDefinitionOnEveryStorage) {
    const FullMatrix dense = test::dominantMatrix(7);
    const BandMatrix plane = test::windyPlane(4, 3, 2.0F);
    const FTriDiagonalMatrix line = test::diffusionLine(9, 1.5F);
    const test::PlainMatrix plain = test::spdMatrix(6);
    for (const Matrix* const A :
         {static_cast<const Matrix*>(&dense), static_cast<const Matrix*>(&plane),
          static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plain)}) {
        for (const double omega : {0.5, 1.0, 1.1, 1.7}) {
            const ExplicitSsor M(*A, omega);
            const RealVector b = wavyVector(A->Rows());

            const auto x = M.Solve(b, nullptr);
            const auto again = M.Solve(b, std::make_unique<RealVector>(A->Rows(), 5.0F));

            expectNear(b, ssorProduct(*A, omega, *x), 1e-4);
            expectSameBits(*again, *x);
        }
    }
}

TEST(ExplicitSsor, RoundsEachFactorOnceFromDouble) {
    const double omega = 1.1;
    int differs = 0;
    for (int d = 1; d <= 20; ++d) {
        const ExplicitSsor M(DiagonalMatrix(1, static_cast<float>(d)), omega);

        const double v = d / omega;
        EXPECT_EQ(M.GetFactor(0)->Get(0, 0), toFloat(v));
        EXPECT_EQ(M.GetFactor(2)->Get(0, 0), toFloat(v));
        EXPECT_EQ(M.GetFactor(1)->Get(0, 0), toFloat(1.0 / ((2.0 - omega) * v)));
        differs +=
            M.GetFactor(1)->Get(0, 0) != toFloat(1.0 / ((2.0 - omega) * double{toFloat(v)}))
                ? 1
                : 0;
    }
    EXPECT_GT(differs, 0) << "a rounded v would have done";
}

TEST(ExplicitSsor, TakesTheCrossedPartsOfALine) {
    // Rows (4, 1), (2, 8) as a line: ToLower holds the 1, ToUpper the 2.
    FTriDiagonalMatrix A(2, 0.0F);
    for (int j = 0; j < 2; ++j) {
        for (int i = 0; i < 2; ++i) {
            A.Set(i, j, small().Get(i, j));
        }
    }

    const ExplicitSsor M(A, 1.0);

    EXPECT_EQ(M.GetFactor(0)->Get(0, 1), 1.0F);
    EXPECT_EQ(M.GetFactor(2)->Get(1, 0), 2.0F);
}

TEST(ExplicitSsor, AddressesItsFactorsByNumber) {
    ExplicitSsor M(small(), 1.0);

    M.SetFactor(1, std::make_unique<DiagonalMatrix>(2, 2.0F));
    M.SetFactor(3, std::make_unique<DiagonalMatrix>(2, 7.0F));
    M.SetFactor(-1, std::make_unique<DiagonalMatrix>(2, 7.0F));

    EXPECT_EQ(M.FactorCount(), 3);
    EXPECT_EQ(M.GetFactor(0)->Get(0, 1), 2.0F);
    EXPECT_EQ(M.GetFactor(1)->Get(0, 0), 2.0F);
    EXPECT_EQ(M.GetFactor(2)->Get(1, 0), 1.0F);
    EXPECT_EQ(M.GetFactor(3), nullptr);
    EXPECT_EQ(M.GetFactor(-1), nullptr);
    // work = (1, 1) over 2; x1 = 0.5 / 8, x0 = (0.5 - x1) / 4.
    EXPECT_EQ(elementsOf(*M.Solve(vectorOf({4, 10}), nullptr)),
              (std::vector<float>{0.109375F, 0.0625F}));
    M.SetFactor(2, nullptr);
    EXPECT_EQ(M.Solve(vectorOf({4, 10}), nullptr), nullptr);
}

TEST(ExplicitSsor, RefusesAnotherSizeAndGoesOn) {
    const ExplicitSsor M(small(), 1.0);

    EXPECT_EQ(M.Solve(RealVector(3), nullptr), nullptr);
    EXPECT_NE(M.Solve(RealVector(2), nullptr), nullptr);
}

TEST(ExplicitSsor, AZeroOnTheDiagonalGoesThrough) {
    const FullMatrix A = test::fullOf(0, 1, 2, 8);

    const auto x = ExplicitSsor(A, 1.0).Solve(vectorOf({4, 10}), nullptr);

    EXPECT_FALSE(std::isfinite((*x)[0]));
}

TEST(ExplicitSsor, KnowsTheSourceOnlyWithAnEstimatedOmega) {
    const SilencedOutput silence;
    const FullMatrix A = small();
    const ExplicitSsor estimated(A);
    const ExplicitSsor given(A, 1.25);
    const std::unique_ptr<Matrix> copy = estimated.Clone();
    const auto source = dynamic_cast<const ExplicitSsor&>(*copy).SourceClone();

    test::expectSameElements(*estimated.SourceClone(), A);
    ASSERT_NE(source, nullptr);
    test::expectSameElements(*source, A);
    EXPECT_EQ(given.SourceClone(), nullptr);
    EXPECT_EQ(given.omega(), 1.25);
}

TEST(ExplicitSsor, ClonesDeeply) {
    auto M = std::make_unique<ExplicitSsor>(small(), 1.1);
    const auto before = M->Solve(vectorOf({4, 10}), nullptr);
    const std::unique_ptr<Matrix> clone = M->Clone();
    M->SetFactor(0, nullptr);
    M.reset();

    expectSameBits(*clone->Solve(vectorOf({4, 10}), nullptr), *before);
    EXPECT_EQ(dynamic_cast<const ExplicitSsor&>(*clone).omega(), 1.1);
}

TEST(ExplicitSsor, PrintsItsNameAndItsFactors) {
    const ExplicitSsor M(small(), 1.0);

    EXPECT_EQ(test::standardOutputOf([&] { M.Print(); }),
              "Explicit SSOR for full matrices\n"
              "Symmetric Matrix(2,2)\n   4.0000   0.0000\n   2.0000   8.0000\n\n"
              "Diagonal Matrix(2,2)\nDiagonal: v(2): [ 0.2500  0.1250 ]\n"
              "Symmetric Matrix(2,2)\n   4.0000   1.0000\n   0.0000   8.0000\n\n");
}

TEST(ExplicitSsor, AnInverseThatAStorageLacksLeavesItsPlaceEmpty) {
    const ExplicitSsor M(test::windyPlane(3, 2, 1.0F), 1.0);

    const auto inverse = M.Inverse();

    const auto& chain = dynamic_cast<const PreconditionerMatrix&>(*inverse);
    EXPECT_EQ(chain.GetFactor(0), nullptr);
    EXPECT_NE(chain.GetFactor(1), nullptr);
    EXPECT_EQ(inverse->Multiply(RealVector(6), nullptr), nullptr);
}

// The estimate as it is defined, with products of its own.
double definedOmega(const Matrix& A, int trials) {
    RealVector x(A.Rows(), 1.0F);
    double r1 = 0.0;
    double r2 = 0.0;
    for (int trial = 0; trial < trials; ++trial) {
        if (trial > 0) {
            x.Randomize(1e-6F, 1.0F);
        }
        const double a = x.Dot(*A.ToDiagonal()->Multiply(x, nullptr));
        const double b = x.Dot(*A.Clone()->Multiply(x, nullptr));
        const double c = x.Dot(*A.Multiply(x, nullptr));
        r1 = std::fmax(r1, a / c);
        r2 = std::fmax(r2, b / c);
    }
    return 2.0 / (1.0 + (2.0 / std::sqrt(r1)) * std::sqrt(r2 + 0.5));
}

TEST(ExplicitSsor, EstimatesOmegaFromTheLargestRatios) {
    const SilencedOutput silence;
    // With tau above 0 the vector of ones has the largest ratio, below 0 the smallest.
    for (const float tau : {3.0F, -0.2F}) {
        const FTriDiagonalMatrix A = test::diffusionLine(8, tau);
        for (const int trials : {1, 2, 3, 6}) {
            seedRuntimeRandom(7);
            const double expected = definedOmega(A, trials);
            const unsigned state = runtimeRandomState();

            seedRuntimeRandom(7);
            const double omega = ExplicitSsor::OptimiseOmega(A, trials);

            EXPECT_EQ(omega, expected) << tau << " " << trials;
            EXPECT_EQ(runtimeRandomState(), state) << "draws n elements a further trial";
            EXPECT_EQ(omega == definedOmega(A, 1), tau > 0.0F || trials == 1)
                << "further trials count";
        }
    }
}

TEST(ExplicitSsor, ARatioThatIsNotANumberGivesWayToTheNext) {
    // The ones give 0 / 0; every other vector gives 1.
    DiagonalMatrix A(2, 1.0F);
    A.Set(1, 1, -1.0F);
    const SilencedOutput silence;

    EXPECT_TRUE(std::isnan(ExplicitSsor::OptimiseOmega(A, 1)));
    EXPECT_EQ(ExplicitSsor::OptimiseOmega(A, 2), 2.0 / (1.0 + 2.0 * std::sqrt(1.5)));
}

TEST(ExplicitSsor, PrintsTheEstimateUnlessSilenced) {
    const DiagonalMatrix A(3, 2.0F);

    EXPECT_EQ(test::standardOutputOf([&] { ExplicitSsor::OptimiseOmega(A, 3); }),
              "Optimised omega is 0.579796\n");
    EXPECT_EQ(test::standardOutputOf([&] {
                  const SilencedOutput silence;
                  ExplicitSsor::OptimiseOmega(A, 3);
              }),
              "");
}

TEST(ExplicitSsor, IsWhatAMatrixMakesWithTheEstimateOfThreeTrials) {
    // The last of the three trials has the largest ratio.
    const unsigned seed = 8;
    const FTriDiagonalMatrix A = test::diffusionLine(6, -0.2F);
    const SilencedOutput silence;
    seedRuntimeRandom(seed);
    const double fewer = ExplicitSsor::OptimiseOmega(A, 2);
    seedRuntimeRandom(seed);
    const double omega = ExplicitSsor::OptimiseOmega(A, 3);
    ASSERT_NE(omega, fewer);

    seedRuntimeRandom(seed);
    const std::unique_ptr<Matrix> M = A.MakeExplicitSsor();

    const auto* const ssor = dynamic_cast<const ExplicitSsor*>(M.get());
    ASSERT_NE(ssor, nullptr);
    EXPECT_EQ(ssor->omega(), omega);
    expectSameBits(*M->Solve(wavyVector(6), nullptr),
                   *ExplicitSsor(A, omega).Solve(wavyVector(6), nullptr));
    test::expectSameElements(*ssor->SourceClone(), A);
}

TEST(ExplicitSsor, OnAPreconditionerWithoutProductsIsNotANumber) {
    const ExplicitPreconditionedProduct empty(2, 1);
    const SilencedOutput silence;

    EXPECT_TRUE(std::isnan(ExplicitSsor::OptimiseOmega(empty, 3)));
}

TEST(Quirk, SsorOmegaClone) {
    // A diagonal matrix has nothing beside its diagonal: the second ratio would be -1/4 by the
    // book, and omega 2 / (1 + 2 sqrt(1/4)) = 1. With a clone of A it is 1.
    const DiagonalMatrix A(4, 3.0F);
    const SilencedOutput silence;

    EXPECT_EQ(ExplicitSsor::OptimiseOmega(A, 3), 2.0 / (1.0 + 2.0 * std::sqrt(1.5)));
}

TEST(Quirk, SsorChainOrder) {
    const FullMatrix A = test::dominantMatrix(5);
    const ExplicitSsor M(A, 1.1);
    const RealVector x = wavyVector(5);
    const std::vector<double> expected(x.data(), x.data() + x.size());

    const auto product = M.Multiply(x, nullptr);
    const auto inverse = M.Inverse();
    const auto& chain = dynamic_cast<const PreconditionerMatrix&>(*inverse);

    // The chain takes lower, diagonal, upper, and its inverse upper, diagonal, lower.
    for (int k = 0; k < 3; ++k) {
        test::expectSameElements(*chain.GetFactor(2 - k), *M.GetFactor(k)->Inverse());
    }
    expectNear(*inverse->Multiply(*product, nullptr), expected, 1e-3);
    // Solve takes them the other way round and so doesn't undo the product.
    EXPECT_GT(test::largestError(*M.Solve(*product, nullptr), expected), 0.1);
}

}  // namespace
}  // namespace orv
