#include <gtest/gtest.h>

#include <cmath>

#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::expectNear;
using test::PlainMatrix;
using test::randomVector;
using test::spdMatrix;
using test::vectorOf;

// Row 0 is (4, 2), row 1 is (1, 2).
PlainMatrix small() {
    PlainMatrix A(2);
    A.Set(0, 0, 4);
    A.Set(1, 0, 2);
    A.Set(0, 1, 1);
    A.Set(1, 1, 2);
    return A;
}

std::unique_ptr<RealVector> start(float a, float b) {
    return std::make_unique<RealVector>(vectorOf({a, b}));
}

TEST(Matrix, GaussSeidelSweepUsesWhatItHasJustWritten) {
    const auto x = small().GaussSeidelSweep(vectorOf({8, 3}), start(0, 2));

    EXPECT_EQ(elementsOf(*x), (std::vector<float>{1, 1}));
    EXPECT_EQ(elementsOf(*small().GaussSeidelSweep(vectorOf({8, 3}), nullptr)),
              (std::vector<float>{2, 0.5f}));
}

TEST(Matrix, SorSweepBlendsWithTheOldValue) {
    // x0 = 0.5 * 4 + 0.5 * (8 - 4) / 4; x1 = 0.5 * 2 + 0.5 * (3 - 2.5) / 2.
    const auto x = small().SorSweep(vectorOf({8, 3}), 0.5f, start(4, 2));

    EXPECT_EQ(elementsOf(*x), (std::vector<float>{2.5f, 1.125f}));
    EXPECT_EQ(elementsOf(*small().SorSweep(vectorOf({8, 3}), 1.0f, nullptr)),
              (std::vector<float>{2, 0.5f}));
}

TEST(Matrix, JacobiSweepReadsTheOldVectorAlone) {
    const auto y = small().JacobiSweep(vectorOf({8, 3}), vectorOf({1, 2}), nullptr);

    EXPECT_EQ(elementsOf(*y), (std::vector<float>{1, 1}));
}

TEST(Matrix, SweepsOfAnotherSizeAreNull) {
    const RealVector b(3);

    EXPECT_EQ(small().GaussSeidelSweep(b, nullptr), nullptr);
    EXPECT_EQ(small().SorSweep(b, 1.0f, nullptr), nullptr);
    EXPECT_EQ(small().JacobiSweep(b, RealVector(2), nullptr), nullptr);
    EXPECT_EQ(small().JacobiIterate(2, b, nullptr), nullptr);
    EXPECT_EQ(small().JacobiVector(b), nullptr);
    EXPECT_TRUE(std::isnan(small().RayleighQuotient(b)));
}

TEST(Matrix, IterationsConvergeToTheSolution) {
    const PlainMatrix A = spdMatrix(6);
    const RealVector x = randomVector(6, 3);
    const auto b = A.Multiply(x, nullptr);
    const std::vector<double> expected(x.data(), x.data() + x.size());

    // 100 sweeps reach the fixed point of float arithmetic.
    expectNear(*A.GaussSeidelIterate(100, *b, nullptr), expected, 1e-6);
    expectNear(*A.JacobiIterate(100, *b, nullptr), expected, 1e-6);
    expectNear(*A.SorIterate(100, *b, 1.1f, nullptr), expected, 1e-6);
}

TEST(Matrix, IterationsCountTheirSweeps) {
    const RealVector b = vectorOf({8, 3});
    auto once = small().JacobiSweep(b, RealVector(2), nullptr);
    const auto twice = small().JacobiSweep(b, *once, nullptr);

    EXPECT_EQ(elementsOf(*small().JacobiIterate(2, b, nullptr)), elementsOf(*twice));
    EXPECT_EQ(elementsOf(*small().GaussSeidelIterate(0, b, start(7, 9))),
              (std::vector<float>{7, 9}));
    EXPECT_EQ(elementsOf(*small().SorIterate(1, b, 0.5f, start(4, 2))),
              (std::vector<float>{2.5f, 1.125f}));
}

TEST(Matrix, JacobiMatrixAndVectorDivideByTheRowsDiagonal) {
    const auto J = small().JacobiMatrix();

    EXPECT_EQ(J->Get(0, 0), 0.0f);
    EXPECT_EQ(J->Get(1, 0), -0.5f);
    EXPECT_EQ(J->Get(0, 1), -0.5f);
    EXPECT_EQ(elementsOf(*small().JacobiVector(vectorOf({8, 3}))),
              (std::vector<float>{2, 1.5f}));
}

TEST(Matrix, PowerIterationFindsTheLargestEigenvalue) {
    PlainMatrix A(2);
    A.Set(0, 0, 2);
    A.Set(1, 1, 5);
    double eigenvalue = 0.0;

    const auto x = A.PowerIteration(40, start(1, 1), eigenvalue);

    EXPECT_EQ(eigenvalue, 5.0);
    EXPECT_EQ((*x)[1], 1.0f);
    EXPECT_NEAR((*x)[0], 0.0f, 1e-6);
    EXPECT_EQ(A.RayleighQuotient(vectorOf({0, 3})), 5.0);
}

TEST(Matrix, PowerIterationFromZerosDividesZeroByZero) {
    double eigenvalue = 7.0;

    const auto x = small().PowerIteration(1, nullptr, eigenvalue);

    EXPECT_EQ(eigenvalue, 0.0);
    EXPECT_TRUE(std::isnan((*x)[0]));
}

TEST(Matrix, SsorFactorsDivideTheDiagonalByOmega) {
    std::unique_ptr<Matrix> lower, diagonal, upper;
    small().SsorFactorsFull(0.5f, lower, diagonal, upper);

    EXPECT_EQ(lower->Get(0, 0), 8.0f);
    EXPECT_EQ(lower->Get(0, 1), 1.0f);
    EXPECT_EQ(lower->Get(1, 0), 0.0f);
    EXPECT_EQ(upper->Get(1, 1), 4.0f);
    EXPECT_EQ(upper->Get(1, 0), 2.0f);
    EXPECT_EQ(diagonal->Get(0, 0), 1.5f / 8.0f);

    std::unique_ptr<Matrix> lowerAlone, diagonalAlone;
    small().SsorFactors(0.5f, lowerAlone, diagonalAlone);
    test::expectSameElements(*lowerAlone, *lower);
    test::expectSameElements(*diagonalAlone, *diagonal);
}

TEST(Matrix, ScaledSsorFactorsPutTheInverseOfOmegaOnTheDiagonal) {
    std::unique_ptr<Matrix> lower, upper, lowerAlone;
    float scale = 0.0f;
    float scaleAlone = 0.0f;

    small().SsorScaledFull(0.5f, scale, lower, upper);
    small().SsorScaled(0.5f, scaleAlone, lowerAlone);

    EXPECT_EQ(scale, 0.75f);
    EXPECT_EQ(scaleAlone, 0.75f);
    EXPECT_EQ(lower->Get(0, 0), 2.0f);
    EXPECT_EQ(lower->Get(0, 1), 1.0f);
    EXPECT_EQ(upper->Get(1, 1), 2.0f);
    EXPECT_EQ(upper->Get(1, 0), 2.0f);
    test::expectSameElements(*lowerAlone, *lower);
}

TEST(Matrix, DiagonalPreconditionerIsTheDiagonal) {
    const auto D = small().MakeDiagonalPreconditioner(std::make_unique<FullMatrix>(5));

    EXPECT_EQ(D->Get(1, 1), 2.0f);
    EXPECT_EQ(D->Get(1, 0), 0.0f);
}

}  // namespace
}  // namespace orv
