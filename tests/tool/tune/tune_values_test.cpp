#include "tune/tune_values.h"

#include <gtest/gtest.h>

#include <array>

namespace orv::cli {
namespace {

using Values = std::vector<std::string>;

constexpr Parameter kTau = real("tau", "pixels^2", 1.0, 0.0, 1000.0, "");
constexpr Parameter kSteps = integer("steps", "steps", 4, 0, 1000, "");

constexpr std::array<Choice, 2> kSchemes{{{"LOD", 0, ""}, {"5/3", 1, ""}}};
constexpr Parameter kScheme = choice(
    "scheme", 0, [] { return std::span<const Choice>(kSchemes); }, "");

Values valuesOf(const Parameter& parameter, std::string_view text) {
    Values values;
    EXPECT_EQ(readValues(parameter, text, values), "") << text;
    return values;
}

std::string errorOf(const Parameter& parameter, std::string_view text) {
    Values values;
    return readValues(parameter, text, values);
}

TEST(TuneValues, ListKeepsItsOrderAndItsWords) {
    EXPECT_EQ(valuesOf(kTau, "5,10,2.50"), (Values{"5", "10", "2.50"}));
    EXPECT_EQ(valuesOf(kScheme, "5/3,LOD"), (Values{"5/3", "LOD"}));
    EXPECT_EQ(valuesOf(kTau, "3,3"), (Values{"3"}));
}

TEST(TuneValues, WideRangeGrowsByAFactor) {
    EXPECT_EQ(valuesOf(kTau, "1..8"), (Values{"1", "2", "4", "8"}));
    EXPECT_EQ(valuesOf(kTau, "0.01..10"), (Values{"0.01", "0.1", "1", "10"}));
    EXPECT_EQ(valuesOf(kTau, "5..40"), (Values{"5", "10", "20", "40"}));
    EXPECT_EQ(valuesOf(kSteps, "1..100"), (Values{"1", "5", "22", "100"}));
}

TEST(TuneValues, NarrowRangeGrowsByAStep) {
    EXPECT_EQ(valuesOf(kTau, "1..2.5"), (Values{"1", "1.5", "2", "2.5"}));
    EXPECT_EQ(valuesOf(kTau, "0..1"), (Values{"0", "0.333", "0.667", "1"}));
}

TEST(TuneValues, WholeNumbersComeOnce) {
    EXPECT_EQ(valuesOf(kSteps, "1..2"), (Values{"1", "2"}));
}

TEST(TuneValues, StepIsKept) {
    EXPECT_EQ(valuesOf(kTau, "1..8:2"), (Values{"1", "3", "5", "7"}));
    EXPECT_EQ(valuesOf(kTau, "0..0.3:0.1"), (Values{"0", "0.1", "0.2", "0.3"}));
}

TEST(TuneValues, ListsAndRangesMix) {
    EXPECT_EQ(valuesOf(kTau, "0.5,1..8,100"), (Values{"0.5", "1", "2", "4", "8", "100"}));
}

TEST(TuneValues, MistakesAreToldAsTheParameterTellsThem) {
    EXPECT_EQ(errorOf(kTau, "1,2000"),
              "--tau: 2000 is out of range (expected PIXELS^2 from 0 to 1000, default 1.0)");
    EXPECT_EQ(errorOf(kTau, "1..2000"),
              "--tau: 2000 is out of range (expected PIXELS^2 from 0 to 1000, default 1.0)");
    EXPECT_EQ(errorOf(kSteps, "1.5").rfind("--steps: ", 0), 0u);
    EXPECT_NE(errorOf(kTau, "1,,2"), "");
    EXPECT_NE(errorOf(kTau, "1,"), "");
    EXPECT_NE(errorOf(kScheme, "LOD,AOS"), "");
}

TEST(TuneValues, MistakesOfRangesSayHowToGoOn) {
    EXPECT_EQ(errorOf(kTau, "8..1"), "--tau: '8..1' runs backwards; write 1..8");
    EXPECT_EQ(errorOf(kTau, "1..8:0"), "--tau: '0' is no step (expected 1..8:2 or 1..8)");
    EXPECT_EQ(errorOf(kSteps, "1..8:0.5"),
              "--steps: '0.5' is no step (expected 1..8:2 or 1..8)");
    EXPECT_EQ(errorOf(kTau, "0..1000:1"), "--tau: '0..1000:1' has more than 64 values");
}

}  // namespace
}  // namespace orv::cli
