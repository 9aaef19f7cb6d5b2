#include <gtest/gtest.h>

#include <cmath>

#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::elementsOf;
using test::expectNear;
using test::PlainMatrix;
using test::randomise;
using test::randomVector;
using test::spdMatrix;
using test::vectorOf;

std::vector<double> widened(const RealVector& v) {
    return {v.data(), v.data() + v.size()};
}

// Conditioning of the test systems is below 10, so float solutions keep five digits.
constexpr double kTolerance = 2e-5;

PlainMatrix dominant(int n) {
    PlainMatrix A(n);
    randomise(A, 4, static_cast<float>(n));
    return A;
}

TEST(Matrix, SolveUpperOfOrderOneDivides) {
    PlainMatrix A(1);
    A.Set(0, 0, 4);

    EXPECT_EQ((*A.SolveUpper(vectorOf({2}), nullptr))[0], 0.5f);
    EXPECT_EQ((*A.SolveUnitUpper(vectorOf({2}), nullptr))[0], 2.0f);
    EXPECT_EQ((*A.SolveLower(vectorOf({2}), nullptr))[0], 0.5f);
}

TEST(Matrix, TriangularSolvesReadTheirTriangleAlone) {
    const PlainMatrix A = dominant(7);
    const RealVector b = randomVector(7, 9);

    const auto upper = A.SolveUpper(b, nullptr);
    const auto unitUpper = A.SolveUnitUpper(b, nullptr);
    const auto lower = A.SolveLower(b, nullptr);
    const auto unitLower = A.SolveUnitLower(b, nullptr);

    expectNear(b, denseProduct(*A.ToUpper(), *upper, false), kTolerance);
    expectNear(b, denseProduct(*A.ToLower(), *lower, false), kTolerance);
    expectNear(b, denseProduct(*A.ToUnitUpper(), *unitUpper, false), 1e-3);
    expectNear(b, denseProduct(*A.ToUnitLower(), *unitLower, false), 1e-3);
}

TEST(Matrix, SolveUpperToWorksOnTheLeadingBlock) {
    PlainMatrix A(3);
    A.Set(0, 0, 2);
    A.Set(1, 0, 1);
    A.Set(1, 1, 4);
    A.Set(2, 0, 1e30f);

    const auto x = A.SolveUpperTo(vectorOf({5, 8, 77}), 2, nullptr);

    EXPECT_EQ((*x)[1], 2.0f);
    EXPECT_EQ((*x)[0], 1.5f);
    EXPECT_EQ(A.SolveUpperTo(vectorOf({5}), 2, nullptr), nullptr);
}

TEST(Matrix, SolvesOfAnotherSizeAreNull) {
    const PlainMatrix A = dominant(3);
    const RealVector b(2);

    EXPECT_EQ(A.SolveUpper(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveUnitUpper(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveLower(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveUnitLower(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveLU(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveLU1(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveCholeskyLower(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveCholeskyUpper(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveLdl(b, nullptr), nullptr);
    EXPECT_EQ(A.SolveUdu(b, nullptr), nullptr);
}

TEST(Matrix, AZeroPivotTravelsAsInfinity) {
    PlainMatrix A(1);

    EXPECT_TRUE(std::isinf((*A.SolveUpper(vectorOf({1}), nullptr))[0]));
}

TEST(Matrix, LuFactorsSolveTheSystem) {
    for (const int n : {1, 2, 3, 8}) {
        const PlainMatrix A = dominant(n);
        const RealVector x = randomVector(n, 5);
        const auto b = A.Multiply(x, nullptr);

        expectNear(*A.FactorLU()->SolveLU(*b, nullptr), widened(x), kTolerance);
        expectNear(*A.FactorLU1()->SolveLU1(*b, nullptr), widened(x), kTolerance);
    }
}

TEST(Matrix, DoolittleAndCroutPutTheOnesOnDifferentSides) {
    PlainMatrix A(2);
    A.Set(0, 0, 2);
    A.Set(1, 0, 4);
    A.Set(0, 1, 6);
    A.Set(1, 1, 15);

    const auto doolittle = A.FactorLU();
    const auto crout = A.FactorLU1();

    EXPECT_EQ(doolittle->Get(0, 1), 3.0f);
    EXPECT_EQ(doolittle->Get(1, 0), 4.0f);
    EXPECT_EQ(doolittle->Get(1, 1), 3.0f);
    EXPECT_EQ(crout->Get(0, 1), 6.0f);
    EXPECT_EQ(crout->Get(1, 0), 2.0f);
    EXPECT_EQ(crout->Get(1, 1), 3.0f);
}

TEST(Matrix, SymmetricFactorsSolveTheSystem) {
    for (const int n : {1, 2, 3, 8}) {
        const PlainMatrix A = spdMatrix(n);
        const RealVector x = randomVector(n, 6);
        const auto b = A.Multiply(x, nullptr);

        expectNear(*A.FactorCholesky()->SolveCholeskyLower(*b, nullptr), widened(x),
                   kTolerance);
        expectNear(*A.FactorCholeskyUpper()->SolveCholeskyUpper(*b, nullptr), widened(x),
                   kTolerance);
        expectNear(*A.FactorLdl()->SolveLdl(*b, nullptr), widened(x), kTolerance);
        expectNear(*A.FactorUdu()->SolveUdu(*b, nullptr), widened(x), kTolerance);
    }
}

TEST(Matrix, SymmetricFactorsFillTheirTriangle) {
    const PlainMatrix A = spdMatrix(3);

    EXPECT_EQ(A.FactorCholesky()->Get(0, 0), 2.0f);
    EXPECT_EQ(A.FactorCholesky()->Get(1, 0), 0.0f);
    EXPECT_EQ(A.FactorCholeskyUpper()->Get(2, 2), 2.0f);
    EXPECT_EQ(A.FactorCholeskyUpper()->Get(1, 2), 0.0f);
    EXPECT_EQ(A.FactorLdl()->Get(0, 0), 4.0f);
    EXPECT_EQ(A.FactorUdu()->Get(2, 2), 4.0f);
}

TEST(Matrix, FactorInPlaceRunsFromTheLastRowUp) {
    PlainMatrix A(2);
    A.Set(0, 0, 5);
    A.Set(1, 0, 2);
    A.Set(0, 1, 3);
    A.Set(1, 1, 4);

    // i = 1: a = R(1, 0) = 2, R(1, 0) = 2 / 4, R(0, 0) = 5 - 0.5 * 2, R(0, 1) = 0.
    const auto R = A.FactorInPlace(nullptr);
    const auto given = A.FactorInPlace(std::make_unique<FullMatrix>(2, 9.0f));

    EXPECT_EQ(R->Get(0, 0), 4.0f);
    EXPECT_EQ(R->Get(1, 0), 0.5f);
    EXPECT_EQ(R->Get(0, 1), 0.0f);
    EXPECT_EQ(R->Get(1, 1), 4.0f);
    test::expectSameElements(*given, *R);
}

TEST(Matrix, InvertFactorWorksOnTheGivenResult) {
    PlainMatrix A(2);
    auto given = std::make_unique<PlainMatrix>(2);
    given->Set(0, 0, 4);
    given->Set(1, 0, 0.5f);
    given->Set(0, 1, 7);
    given->Set(1, 1, 8);

    // b = 0, e = 1: R(1, 0) = -0.5, less R(1, 0) R(1, 1) = -4: 3.5; R(0, 1) = 0.
    const auto R = A.InvertFactor(std::move(given));

    EXPECT_EQ(R->Get(0, 0), 0.25f);
    EXPECT_EQ(R->Get(1, 0), 3.5f);
    EXPECT_EQ(R->Get(0, 1), 0.0f);
    EXPECT_EQ(R->Get(1, 1), 0.125f);
    EXPECT_EQ(spdMatrix(2).InvertFactor(nullptr)->Get(0, 0), 0.25f);
}

// A matrix that passes for its own inverted factor.
class InvertedFactor final : public PlainMatrix {
  public:
    using PlainMatrix::PlainMatrix;
    std::unique_ptr<Matrix> FactorInPlace(std::unique_ptr<Matrix>) const override {
        return Clone();
    }
    std::unique_ptr<Matrix> InvertFactor(std::unique_ptr<Matrix> result) const override {
        return result;
    }
};

TEST(Matrix, InverseFromFactorsSumsInDouble) {
    // Two terms of half a unit of the diagonal each: in float both would be lost.
    InvertedFactor A(3);
    A.Set(0, 0, 1);
    A.Set(1, 1, 1);
    A.Set(2, 2, 1);
    A.Set(2, 0, 0x1p-12f);
    A.Set(2, 1, 0x1p-12f);

    EXPECT_EQ(A.InverseFromFactors(nullptr)->Get(2, 2), 1.0f + 0x1p-23f);
}

TEST(Quirk, InverseFromFactors) {
    PlainMatrix A(2);
    A.Set(0, 0, 5);
    A.Set(1, 0, 2);
    A.Set(0, 1, 3);
    A.Set(1, 1, 4);

    // The factor has 4, 0.5, 0, 4; its inverse 0.25, 1.5, 0, 0.25. Then R(1, 0) = 0.25 * 1.5
    // and R(1, 1) = 0.25 + 0.375 * 1.5.
    const auto R = A.InverseFromFactors(nullptr);
    EXPECT_EQ(R->Get(0, 0), 0.25f);
    EXPECT_EQ(R->Get(1, 0), 0.375f);
    EXPECT_EQ(R->Get(0, 1), 0.0f);
    EXPECT_EQ(R->Get(1, 1), 0.8125f);

    // The upward sum ends where it leaves a larger matrix.
    EXPECT_TRUE(std::isfinite(spdMatrix(5).InverseFromFactors(nullptr)->Get(4, 4)));
}

}  // namespace
}  // namespace orv
