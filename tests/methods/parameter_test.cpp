#include "methods/parameter.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace orv {
namespace {

constexpr std::array<Choice, 3> kColours{{{"red", 7, ""}, {"green", 8, ""}, {"blue", 9, ""}}};

std::span<const Choice> colours() {
    return kColours;
}

constexpr Parameter kSigma = real("sigma", "pixels", 2.0, 0.5, 256.0, "width");
constexpr Parameter kSteps = integer("steps", "", 1, 1, 50, "steps");
constexpr Parameter kContrast = real("contrast", "grey levels", 10.5, 0.01, 1000.0, "edges");
constexpr Parameter kColour = choice("colour", 8, colours, "colour");
constexpr Parameter kNumbered = numberedChoice("colour", 8, colours, "colour");
constexpr Parameter kFlag = flag("fast", false, "speed");

std::string errorOf(const Parameter& parameter, std::string_view text) {
    double value = -77.0;
    const std::string error = parseValue(parameter, text, value);
    EXPECT_EQ(value, error.empty() ? value : -77.0) << "written in spite of the error";
    return error;
}

double valueOf(const Parameter& parameter, std::string_view text) {
    double value = -77.0;
    EXPECT_EQ(parseValue(parameter, text, value), "");
    return value;
}

TEST(Parameter, ReadsNumbersAndBothEndsOfTheRange) {
    EXPECT_EQ(valueOf(kSigma, "0.5"), 0.5);
    EXPECT_EQ(valueOf(kSigma, "256"), 256.0);
    EXPECT_EQ(valueOf(kSigma, "2.5e1"), 25.0);
    EXPECT_EQ(valueOf(kSteps, "50"), 50.0);
}

TEST(Parameter, SaysWhatItExpectedInsteadOfAWord) {
    EXPECT_EQ(errorOf(kSigma, "wide"),
              "'wide' is not a number (expected PIXELS from 0.5 to 256, default 2.0)");
}

TEST(Parameter, RefusesNumbersWithAnythingAroundThem) {
    for (const char* const text : {"", " 1", "1 ", "1px", "1,5", "0x10", "--1", "1e", "+1"}) {
        SCOPED_TRACE(text);
        EXPECT_NE(errorOf(kSigma, text).find("is not a number"), std::string::npos);
    }
}

TEST(Parameter, RefusesWhatIsNotFinite) {
    for (const char* const text : {"nan", "inf", "-inf", "NaN", "1e999", "-1e999"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(errorOf(kSigma, text), "'" + std::string(text) +
                                             "' is not a finite number (expected PIXELS from "
                                             "0.5 to 256, default 2.0)");
    }
}

TEST(Parameter, SaysTheRangeWhenANumberIsOutside) {
    EXPECT_EQ(errorOf(kSigma, "1e9"),
              "1e9 is out of range (expected PIXELS from 0.5 to 256, default 2.0)");
    EXPECT_EQ(errorOf(kSigma, "0.49"),
              "0.49 is out of range (expected PIXELS from 0.5 to 256, default 2.0)");
    EXPECT_NE(errorOf(kSigma, "1e999"), "");
}

TEST(Parameter, RefusesFractionsOfIntegers) {
    EXPECT_EQ(errorOf(kSteps, "1.5"),
              "'1.5' is not a whole number (expected N from 1 to 50, default 1)");
}

TEST(Parameter, TakesChoicesInAnyCaseAndOffersTheNearest) {
    EXPECT_EQ(valueOf(kColour, "Blue"), 9.0);
    EXPECT_EQ(errorOf(kColour, "gren"),
              "'gren' is not known, did you mean 'green'? (expected red, green, blue, default "
              "green)");
}

TEST(Parameter, TakesTheNumberOfAChoiceOnlyWhereThatIsAllowed) {
    EXPECT_EQ(valueOf(kNumbered, "7"), 7.0);
    EXPECT_NE(errorOf(kNumbered, "6").find("6 is out of range (expected "), std::string::npos);
    EXPECT_NE(checkValue(kNumbered, 6.0).find("6 is out of range"), std::string::npos);
    EXPECT_NE(errorOf(kNumbered, "none").find("'none' is not known"), std::string::npos);
    EXPECT_NE(errorOf(kColour, "7"), "");
}

TEST(Parameter, ReadsFlags) {
    EXPECT_EQ(valueOf(kFlag, "on"), 1.0);
    EXPECT_EQ(valueOf(kFlag, "FALSE"), 0.0);
    EXPECT_EQ(errorOf(kFlag, "maybe"),
              "'maybe' is neither on nor off (expected flag, default off)");
}

TEST(Parameter, ChecksNumbersAsItChecksTexts) {
    EXPECT_EQ(checkValue(kSigma, 0.5), "");
    EXPECT_NE(checkValue(kSigma, 0.4), "");
    EXPECT_NE(checkValue(kSigma, std::nan("")), "");
    EXPECT_NE(checkValue(kSteps, 1.5), "");
    EXPECT_EQ(checkValue(kColour, 9.0), "");
    EXPECT_NE(checkValue(kColour, 1.0), "");
    EXPECT_NE(checkValue(kFlag, 2.0), "");
}

TEST(Parameter, WritesPlaceholdersAndDefaults) {
    EXPECT_EQ(placeholder(kContrast), "GREY-LEVELS");
    EXPECT_EQ(placeholder(kColour), "NAME");
    EXPECT_EQ(placeholder(kFlag), "");
    EXPECT_EQ(defaultText(kSigma), "2.0");
    EXPECT_EQ(defaultText(kContrast), "10.5");
    EXPECT_EQ(defaultText(kSteps), "1");
    EXPECT_EQ(defaultText(kColour), "green");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(1e9), "1e+09");
    EXPECT_EQ(numberText(123456789.0), "123456789");
}

}  // namespace
}  // namespace orv
