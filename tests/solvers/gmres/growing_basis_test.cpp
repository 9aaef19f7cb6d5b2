#include "solvers/gmres/growing_basis.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(GrowingBasis, MakesVectorsAsFarAsTheyAreReached) {
    GrowingBasis V;
    V.prepare(5);
    EXPECT_EQ(V.made(), 0);

    V.reach(2);
    V[2].Fill(4.0F);
    V.reach(1);

    EXPECT_EQ(V.made(), 3);
    EXPECT_EQ(V[2].size(), 5);
    EXPECT_EQ(V[1][4], 0.0F);
    EXPECT_EQ(V[2][4], 4.0F);
}

TEST(GrowingBasis, KeepsItsVectorsForOneSizeAndDropsThemForAnother) {
    GrowingBasis V;
    V.prepare(5);
    V.reach(0);
    const RealVector* const first = &V[0];

    V.prepare(5);
    const bool kept = V.made() == 1 && &V[0] == first;
    V.prepare(6);
    const int left = V.made();
    V.reach(0);

    EXPECT_TRUE(kept);
    EXPECT_EQ(left, 0);
    EXPECT_EQ(V[0].size(), 6);
}

}  // namespace
}  // namespace orv
