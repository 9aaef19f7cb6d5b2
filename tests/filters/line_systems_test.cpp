#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "filters/thomas_linear_system.h"
#include "support/plane_support.h"
#include "support/printed_text.h"

namespace orv {
namespace {

using test::Noise;
using test::printedTo;
using test::sameBits;

RealVector vectorOf(const std::vector<float>& values) {
    RealVector vector(static_cast<int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        vector.data()[i] = values[i];
    }
    return vector;
}

RealVector noiseVector(int n, Noise& noise, double from, double to) {
    RealVector vector(n);
    for (int i = 0; i < n; ++i) {
        vector[i] = static_cast<float>(noise.between(from, to));
    }
    return vector;
}

// 2 -1 0 / -1.5 3 0.5 / 0 -2 4 with the right side of x = (1, 2, 3).
void fillSmall(ThomasLinearSystem& system) {
    system.setTriDiagonal(vectorOf({-1.0F, 0.5F}), vectorOf({2.0F, 3.0F, 4.0F}),
                          vectorOf({-1.5F, -2.0F}));
    system.setB(vectorOf({0.0F, 6.0F, 8.0F}));
}

TEST(LinearSystem, StartsWithZeros) {
    ThomasLinearSystem system(4);

    EXPECT_EQ(system.rows(), 4);
    EXPECT_EQ(system.columns(), 4);
    EXPECT_EQ(system.entryCount(), 10);
    EXPECT_EQ(system.x().size(), 4);
    EXPECT_EQ(system.b().size(), 4);
    EXPECT_EQ(system.x().SumOfSquares(), 0.0);
    EXPECT_EQ(system.b().SumOfSquares(), 0.0);
    EXPECT_EQ(system.matrix().FrobeniusNorm(), 0.0);
    EXPECT_EQ(system.spare().size(), 3);
    EXPECT_EQ(system.pivots().size(), 4);
    EXPECT_EQ(system.multipliers().size(), 3);
    EXPECT_EQ(system.forward().size(), 4);
}

TEST(LinearSystem, PutsEachDiagonalInItsPlace) {
    ThomasLinearSystem system(3);
    fillSmall(system);

    EXPECT_EQ(system.matrix().Get(1, 0), -1.0F);
    EXPECT_EQ(system.matrix().Get(2, 1), 0.5F);
    EXPECT_EQ(system.matrix().Get(1, 1), 3.0F);
    EXPECT_EQ(system.matrix().Get(0, 1), -1.5F);
    EXPECT_EQ(system.matrix().Get(1, 2), -2.0F);
}

TEST(LinearSystem, CopiesWhatItIsGiven) {
    ThomasLinearSystem system(3);
    FTriDiagonalMatrix matrix(3, 2.0F);
    RealVector values = vectorOf({1.0F, 2.0F, 3.0F});
    system.setMatrix(matrix);
    system.setX(values);
    system.setB(values);
    matrix.Fill(9.0F);
    values.Fill(9.0F);

    EXPECT_EQ(system.matrix().Get(1, 0), 2.0F);
    EXPECT_EQ(system.x()[2], 3.0F);
    EXPECT_EQ(system.b()[2], 3.0F);
}

TEST(LinearSystem, DropsVectorsOfAnotherSize) {
    ThomasLinearSystem system(3);
    system.setB(vectorOf({1.0F, 2.0F}));

    EXPECT_EQ(system.b().SumOfSquares(), 0.0);
}

TEST(ThomasLinearSystem, SolvesASmallSystem) {
    ThomasLinearSystem system(3);
    fillSmall(system);
    system.factorise();

    EXPECT_FLOAT_EQ(system.x()[0], 1.0F);
    EXPECT_FLOAT_EQ(system.x()[1], 2.0F);
    EXPECT_FLOAT_EQ(system.x()[2], 3.0F);
    EXPECT_EQ(system.multipliers()[0], -0.75F);
    EXPECT_EQ(system.pivots()[1], 2.25F);
    EXPECT_EQ(system.forward()[1], 6.0F);
}

TEST(ThomasLinearSystem, LeavesAResidualOfRoundingSize) {
    Noise noise(3);
    for (const int n : {1, 2, 3, 7, 50, 301}) {
        ThomasLinearSystem system(n);
        FTriDiagonalMatrix matrix(n, 0.0F);
        matrix.upper() = noiseVector(n - 1, noise, -1.0, 1.0);
        matrix.lower() = noiseVector(n - 1, noise, -1.0, 1.0);
        matrix.main() = noiseVector(n, noise, 2.5, 4.0);
        const RealVector b = noiseVector(n, noise, -100.0, 100.0);

        const RealVector& x = system.solved(matrix, RealVector(n), b);

        for (int i = 0; i < n; ++i) {
            double row = static_cast<double>(matrix.Get(i, i)) * x[i] - b[i];
            row += i > 0 ? static_cast<double>(matrix.Get(i - 1, i)) * x[i - 1] : 0.0;
            row += i + 1 < n ? static_cast<double>(matrix.Get(i + 1, i)) * x[i + 1] : 0.0;
            // Some float roundings of values up to 100 in a dominant system.
            ASSERT_NEAR(row, 0.0, 1e-4) << n << " row " << i;
        }
    }
}

TEST(ThomasLinearSystem, RoundsEveryOperationToFloat) {
    Noise noise(8);
    const int n = 40;
    const RealVector super = noiseVector(n - 1, noise, -1.0, 1.0);
    const RealVector sub = noiseVector(n - 1, noise, -1.0, 1.0);
    const RealVector diag = noiseVector(n, noise, 2.5, 4.0);
    const RealVector b = noiseVector(n, noise, 0.0, 255.0);
    std::vector<float> x(static_cast<std::size_t>(n));
    std::vector<float> p(x.size());
    std::vector<float> f(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        const int row = static_cast<int>(i);
        const float m = i > 0 ? sub[row - 1] / p[i - 1] : 0.0F;
        const float above = i > 0 ? super[row - 1] * m : 0.0F;
        const float before = i > 0 ? m * f[i - 1] : 0.0F;
        p[i] = diag[row] - above;
        f[i] = b[row] - before;
    }
    x.back() = f.back() / p.back();
    for (std::size_t i = x.size() - 1; i-- > 0;) {
        const float product = super[static_cast<int>(i)] * x[i + 1];
        const float difference = f[i] - product;
        x[i] = difference / p[i];
    }

    ThomasLinearSystem system(n);
    system.setTriDiagonal(super, diag, sub);
    system.solve(RealVector(n, 5.0F), b);

    EXPECT_TRUE(sameBits(system.x().data(), x.data(), x.size()));
}

TEST(ThomasLinearSystem, SolvesAgainWithAnotherRightSide) {
    ThomasLinearSystem system(3);
    fillSmall(system);

    const RealVector& x = system.solved(RealVector(3), vectorOf({1.0F, 2.0F, 2.0F}));

    EXPECT_EQ(&x, &system.x());
    EXPECT_FLOAT_EQ(x[0], 1.0F);
    EXPECT_FLOAT_EQ(x[1], 1.0F);
    EXPECT_FLOAT_EQ(x[2], 1.0F);
}

TEST(ThomasLinearSystem, LeavesTheSpareVectorAlone) {
    ThomasLinearSystem system(3);
    fillSmall(system);
    system.factorise();

    EXPECT_EQ(system.spare().SumOfSquares(), 0.0);
}

TEST(ThomasLinearSystem, LetsAZeroPivotThrough) {
    ThomasLinearSystem system(2);
    system.setB(vectorOf({1.0F, 1.0F}));
    system.factorise();

    EXPECT_FALSE(std::isfinite(system.x()[0]));
    EXPECT_FALSE(std::isfinite(system.x()[1]));
}

TEST(ThomasLinearSystem, PrintsMatrixAndVectorsToAFile) {
    ThomasLinearSystem system(2);
    system.setTriDiagonal(vectorOf({-1.0F}), vectorOf({2.0F, 3.0F}), vectorOf({-4.0F}));
    system.setB(vectorOf({0.5F, 0.25F}));

    EXPECT_EQ(printedTo([&](std::FILE* file) { system.print(file); }),
              "Thomas Linear System\nFTriDiagonalMatrix(2,2)\n"
              "L: v(1): [ -4.000 ]\nD: v(2): [  2.000   3.000 ]\nU: v(1): [ -1.000 ]\n"
              " x: v(2): [  0.000   0.000 ]\n b: v(2): [  0.500   0.250 ]\n");
}

TEST(ThomasLinearSystem, PrintsToTheStandardOutput) {
    ThomasLinearSystem system(2);
    system.setB(vectorOf({0.5F, 0.25F}));
    testing::internal::CaptureStdout();
    system.print();

    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(text.rfind("Thomas Linear System\nFTriDiagonalMatrix(2,2)\n", 0), 0U);
    EXPECT_NE(text.find(" x: v(2): [ 0.0000  0.0000 ]\n b: v(2): [ 0.5000  0.2500 ]\n"),
              std::string::npos);
}

}  // namespace
}  // namespace orv
