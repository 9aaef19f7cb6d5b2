#include "solvers/gmres/growing_matrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

namespace orv {
namespace {

/// A value of its own for each element.
float mark(int i, int j) {
    return static_cast<float>(1 + 1000 * i + j);
}

TEST(GrowingMatrix, MakesNothingBeforeItIsNeeded) {
    EXPECT_EQ(GrowingMatrix(INT_MAX).order(), 0);
}

TEST(GrowingMatrix, KeepsItsElementsAndAddsZeros) {
    GrowingMatrix H(1000);
    H.reach(0);
    const int before = H.order();
    for (int i = 0; i < before; ++i) {
        for (int j = 0; j < before; ++j) {
            H.Set(i, j, mark(i, j));
        }
    }

    H.reach(before);

    EXPECT_GE(H.order(), 2 * before);
    for (int i = 0; i < H.order(); ++i) {
        for (int j = 0; j < H.order(); ++j) {
            const bool old = i < before && j < before;
            EXPECT_EQ(H.Get(i, j), old ? mark(i, j) : 0.0F) << i << ", " << j;
        }
    }
}

TEST(GrowingMatrix, HasAtMostOneRowMoreThanColumnsOfTheBasis) {
    for (const int m : {2, 7, 8, 20}) {
        GrowingMatrix H(m);
        for (int index = 0; index <= m; ++index) {
            H.reach(index);
            EXPECT_GT(H.order(), index) << m;
            EXPECT_LE(H.order(), m + 1) << m;
        }
    }
}

TEST(GrowingMatrix, StaysInPlaceWhileItIsLargeEnough) {
    GrowingMatrix H(INT_MAX);
    H.reach(100);
    const FullMatrix* const block = &H.block();

    H.reach(3);
    H.reach(100);

    EXPECT_EQ(&H.block(), block);
    EXPECT_EQ(H.order(), 101);
}

TEST(GrowingMatrix, ClearsEveryElement) {
    GrowingMatrix H(5);
    H.reach(5);
    H.Set(2, 3, 7.0F);
    H.Set(5, 5, 8.0F);

    H.Clear();

    EXPECT_EQ(H.Get(2, 3), 0.0F);
    EXPECT_EQ(H.Get(5, 5), 0.0F);
}

TEST(Lengthen, KeepsTheElementsAndNeverShortens) {
    auto v = std::make_unique<RealVector>(2, 3.0F);

    lengthen(v, 4);
    const RealVector* const kept = v.get();
    lengthen(v, 1);
    lengthen(v, 4);

    EXPECT_EQ(v.get(), kept);
    ASSERT_EQ(v->size(), 4);
    EXPECT_EQ((*v)[1], 3.0F);
    EXPECT_EQ((*v)[2], 0.0F);
    EXPECT_EQ((*v)[3], 0.0F);
}

}  // namespace
}  // namespace orv
