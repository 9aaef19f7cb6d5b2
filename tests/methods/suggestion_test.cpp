#include "methods/suggestion.h"

#include <gtest/gtest.h>

#include <array>

namespace orv {
namespace {

constexpr std::array<std::string_view, 4> kWords{"restore", "denoise", "methods", "solvers"};

TEST(Suggestion, FindsAWordWithOneLetterMissing) {
    EXPECT_EQ(nearestWord("restor", kWords), "restore");
}

TEST(Suggestion, CountsASwapOfNeighboursOnce) {
    constexpr std::array<std::string_view, 2> words{"tau", "sigma"};

    EXPECT_EQ(nearestWord("tua", words), "tau");
}

TEST(Suggestion, DropsTheCaseOfLetters) {
    EXPECT_EQ(nearestWord("DENOISE", kWords), "denoise");
    EXPECT_TRUE(sameWord("Aos", "AOS"));
    EXPECT_FALSE(sameWord("AOS", "AOSX"));
}

TEST(Suggestion, StaysSilentWhenNothingIsNear) {
    EXPECT_EQ(nearestWord("blur", kWords), "");
    EXPECT_EQ(nearestWord("", kWords), "");
    EXPECT_EQ(didYouMean("blur", kWords), "");
    EXPECT_EQ(nearestWord(std::string(100000, 'r'), kWords), "");
}

TEST(Suggestion, OffersTheNearestAsAQuestion) {
    EXPECT_EQ(didYouMean("solver", kWords), ", did you mean 'solvers'?");
}

}  // namespace
}  // namespace orv
