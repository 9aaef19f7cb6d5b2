#include "algebra/real_vector.h"

#include <gtest/gtest.h>

#include "base/runtime_random.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::randomVector;
using test::vectorOf;

TEST(RealVector, StartsAtZeroOrAtTheGivenValue) {
    EXPECT_EQ(elementsOf(RealVector(3)), (std::vector<float>{0, 0, 0}));
    EXPECT_EQ(elementsOf(RealVector(2, 1.5f)), (std::vector<float>{1.5f, 1.5f}));
}

TEST(RealVector, BothViewsShareTheElements) {
    RealVector v = vectorOf({1, 2, 3});

    for (int k = 1; k <= v.size(); ++k) {
        EXPECT_EQ(&v.data1()[k], &v.data()[k - 1]);
    }
    EXPECT_EQ(v.data1()[0], 0.0f);
}

TEST(RealVector, CopiesAreDeep) {
    RealVector v = vectorOf({1, 2});
    RealVector copy(v);
    const auto clone = v.Clone();

    v[0] = 9;

    EXPECT_EQ(elementsOf(copy), (std::vector<float>{1, 2}));
    EXPECT_EQ(elementsOf(*clone), (std::vector<float>{1, 2}));
}

TEST(RealVector, AssignmentTakesOverSizeAndElements) {
    RealVector v(5, 7.0f);

    v = vectorOf({1, 2});
    RealVector w(2);
    const RealVector source = vectorOf({3, 4});
    const float* block = w.data();
    w = source;

    EXPECT_EQ(elementsOf(v), (std::vector<float>{1, 2}));
    EXPECT_EQ(elementsOf(w), (std::vector<float>{3, 4}));
    EXPECT_EQ(w.data(), block);
    EXPECT_NE(w.data(), source.data());
}

TEST(RealVector, AssignmentToItselfChangesNothing) {
    RealVector v = vectorOf({1, 2});
    const RealVector& same = v;

    const RealVector copy = (v = same);

    EXPECT_EQ(elementsOf(v), (std::vector<float>{1, 2}));
    EXPECT_EQ(elementsOf(copy), (std::vector<float>{1, 2}));
}

TEST(RealVector, EmptyVectorIsLegalForLoopsAndSums) {
    RealVector v(0);

    v.Fill(3.0f);
    v.AddScalar(1.0f);
    v.AddScaled(2.0f, RealVector(0));

    EXPECT_EQ(v.Sum(), 0.0);
    EXPECT_EQ(v.SumOfSquares(), 0.0);
    EXPECT_EQ(v.Dot(RealVector(0)), 0.0);
}

TEST(RealVector, CopyFromAnotherSizeLeavesTheTargetAsItWas) {
    RealVector v = vectorOf({1, 2});

    v.CopyFrom(vectorOf({5, 6, 7}));
    v.SetScaled(2.0f, vectorOf({5, 6, 7}));

    EXPECT_EQ(elementsOf(v), (std::vector<float>{1, 2}));
}

TEST(RealVector, FillRangeTouchesTheRangeAlone) {
    RealVector v(4, 1.0f);

    v.FillRange(1, 2, 5.0f);

    EXPECT_EQ(elementsOf(v), (std::vector<float>{1, 5, 5, 1}));
}

TEST(RealVector, RandomizeScalesTheRuntimeGenerator) {
    RealVector v(3);
    seedRuntimeRandom(1);

    v.Randomize(2.0f, 4.0f);

    // The generator starts 41, 18467, 6334 from seed 1.
    const double step = 3.051850947599719e-05;
    EXPECT_EQ(v[0], static_cast<float>(41 * step * 2.0 + 2.0));
    EXPECT_EQ(v[1], static_cast<float>(18467 * step * 2.0 + 2.0));
    EXPECT_EQ(v[2], static_cast<float>(6334 * step * 2.0 + 2.0));
}

TEST(RealVector, SumsAreWiderThanFloat) {
    RealVector v(3, 1.0f);
    v[0] = 16777216.0f;

    EXPECT_EQ(v.Sum(), 16777218.0);
    EXPECT_EQ(v.SumOfSquares(), 16777216.0 * 16777216.0 + 2.0);
    EXPECT_EQ(v.Dot(RealVector(3, 1.0f)), 16777218.0);
}

TEST(RealVector, SumsFollowTheDeclaredLanes) {
    // Lane 0 loses the 1 of element 8 between 2^60 and -2^60; lane 1 keeps that of element 1.
    RealVector v(24);
    v[0] = 0x1p60f;
    v[1] = 1.0f;
    v[8] = 1.0f;
    v[16] = -0x1p60f;
    RealVector squares(24);
    squares[0] = 0x1p30f;
    squares[1] = 1.0f;
    squares[8] = 1.0f;

    EXPECT_EQ(v.Sum(), 1.0);
    EXPECT_EQ(v.Dot(RealVector(24, 1.0f)), 1.0);
    // 2^60 takes neither 1: lane 0 drops its own, the join drops that of lane 1.
    EXPECT_EQ(squares.SumOfSquares(), 0x1p60);
}

TEST(RealVector, ExtremesStartFromTheFirstElement) {
    const RealVector v = vectorOf({-3, 2, -1});

    EXPECT_EQ(v.Min(), -3.0);
    EXPECT_EQ(v.Max(), 2.0);
    EXPECT_EQ(v.MaxAbs(), 3.0);
    EXPECT_EQ(vectorOf({-2}).Max(), -2.0);
}

TEST(RealVector, ScalarUpdatesWorkOnEachElement) {
    RealVector v = vectorOf({1, 3});

    v.AddScalar(2);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{3, 5}));
    v.SubtractScalar(1);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{2, 4}));
    v.MultiplyScalar(3);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{6, 12}));
    v.DivideScalar(4);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{1.5f, 3}));
}

TEST(RealVector, VectorUpdatesFollowTheirFormulas) {
    const RealVector x = vectorOf({1, 2});
    const RealVector y = vectorOf({10, 20});
    const RealVector z = vectorOf({100, 200});
    RealVector v = vectorOf({5, 7});

    v.Add(x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{6, 9}));
    v.AddScaled(2, x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{8, 13}));
    v.AddScaled2(2, x, 3, y);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{40, 77}));
    v.AddScaled3(1, x, 2, y, 3, z);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{361, 719}));
    v.ScaleAdd(2, x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{723, 1440}));
    v.ScaleAddScaled(2, 3, x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{1449, 2886}));
    v.ScaleAddScaled2(2, 3, x, 4, y);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{2941, 5858}));
    v.SetDifference(y, x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{9, 18}));
    v.SetScaled(3, x);
    EXPECT_EQ(elementsOf(v), (std::vector<float>{3, 6}));
}

TEST(RealVector, OneProductIsRoundedTwiceAndTwoProductsOnce) {
    const RealVector x(1, 1.0f + 0x1p-12f);
    RealVector one(1, -1.0f);
    RealVector two(1, -1.0f);

    one.AddScaled(1.0f + 0x1p-12f, x);
    two.AddScaled2(1.0f + 0x1p-12f, x, 0.0f, x);

    EXPECT_EQ(one[0], 0x1p-11f);
    EXPECT_EQ(two[0], 0x1p-11f + 0x1p-24f);
}

TEST(RealVector, AnUpdateWithItsSumGivesTheBitsOfBothCalls) {
    for (const int n : {0, 1, 9, 100}) {
        RealVector separate = randomVector(n, 1);
        RealVector together = separate;
        const RealVector x = randomVector(n, 2);
        RealVector doubled = x;

        separate.AddScaled(0.7f, x);

        EXPECT_EQ(together.AddScaledSumOfSquares(0.7f, x), separate.SumOfSquares());
        EXPECT_EQ(elementsOf(together), elementsOf(separate));
        EXPECT_EQ(doubled.AddScaledSumOfSquares(1.0f, doubled), 4.0 * x.SumOfSquares());
    }
}

TEST(RealVector, PrintsFourDecimals) {
    EXPECT_EQ(test::standardOutputOf([] {
                  vectorOf({1, -2.5f}).Print();
              }),
              "v(2): [ 1.0000 -2.5000 ]\n");
}

TEST(Quirk, VectorFileDecimals) {
    EXPECT_EQ(test::fileOutputOf([](std::FILE* f) {
                  vectorOf({1, -2.5f}).PrintTo(f);
              }),
              "v(2): [  1.000  -2.500 ]\n");
}

}  // namespace
}  // namespace orv
