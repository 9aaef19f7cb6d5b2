#include "base/byte_count.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

constexpr std::size_t kMost = PTRDIFF_MAX;

TEST(ByteCount, ProductsThatFitAreExact) {
    EXPECT_EQ(boundedProduct(0, 0), 0U);
    EXPECT_EQ(boundedProduct(0, SIZE_MAX), 0U);
    EXPECT_EQ(boundedProduct(SIZE_MAX, 0), 0U);
    EXPECT_EQ(boundedProduct(7, 9), 63U);
    EXPECT_EQ(boundedProduct(kMost, 1), kMost);
    EXPECT_EQ(boundedProduct(kMost / 2, 2), kMost - 1);
}

TEST(ByteCount, ProductsThatDoNotFitAreTheMost) {
    EXPECT_EQ(boundedProduct(SIZE_MAX, 1), kMost);
    EXPECT_EQ(boundedProduct(kMost / 2 + 1, 2), kMost);
    EXPECT_EQ(boundedProduct(SIZE_MAX / 8 + 1, 8), kMost);
    EXPECT_EQ(boundedProduct(SIZE_MAX, SIZE_MAX), kMost);
}

}  // namespace
}  // namespace orv
