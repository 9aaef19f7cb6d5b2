#include "base/rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace orv {
namespace {

TEST(ToInt, TruncatesTowardZero) {
    EXPECT_EQ(toInt(0.9), 0);
    EXPECT_EQ(toInt(-0.9), 0);
    EXPECT_EQ(toInt(254.999), 254);
    EXPECT_EQ(toInt(-1.0), -1);
}

TEST(ToInt, NanAndOverflowGiveIntMin) {
    EXPECT_EQ(toInt(std::nan("")), INT_MIN);
    EXPECT_EQ(toInt(std::numeric_limits<double>::infinity()), INT_MIN);
    EXPECT_EQ(toInt(-std::numeric_limits<double>::infinity()), INT_MIN);
    EXPECT_EQ(toInt(2147483648.0), INT_MIN);
    EXPECT_EQ(toInt(-2147483649.0), INT_MIN);
}

TEST(ToInt, TheEndsOfTheRangeFit) {
    EXPECT_EQ(toInt(2147483647.5), INT_MAX);
    EXPECT_EQ(toInt(-2147483648.5), INT_MIN);
}

TEST(ToLowByte, KeepsTheLowByte) {
    EXPECT_EQ(toLowByte(300), 44);
    EXPECT_EQ(toLowByte(256), 0);
    EXPECT_EQ(toLowByte(-1), 255);
    EXPECT_EQ(toLowByte(INT_MIN), 0);
}

}  // namespace
}  // namespace orv
