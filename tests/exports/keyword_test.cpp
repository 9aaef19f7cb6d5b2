#include "exports/keyword.h"

#include <gtest/gtest.h>

#include <string>

namespace orv {
namespace {

struct Case {
    const char* text;
    int number;
};

TEST(Keyword, EverySchemeLiteralIsFound) {
    const Case cases[] = {{"2DSemi", 30}, {"2DImplicit", 40}, {"LOD", 0},  {"AFI", 1},
                          {"ADI", 10},    {"AOS", 20},        {"AMOS", 21}};
    for (const Case& c : cases) {
        EXPECT_EQ(schemeNumber(c.text), c.number) << c.text;
        EXPECT_EQ(schemeNumber((std::string("x ") + c.text + "-y").c_str()), c.number)
            << c.text;
    }
}

TEST(Keyword, EarlierSchemeOfTheTableWinsInEveryPair) {
    const Case cases[] = {{"2DSemi", 30}, {"2DImplicit", 40}, {"LOD", 0},  {"AFI", 1},
                          {"ADI", 10},    {"AOS", 20},        {"AMOS", 21}};
    for (int first = 0; first < 7; ++first) {
        for (int second = first; second < 7; ++second) {
            const std::string inOrder = std::string(cases[first].text) + cases[second].text;
            const std::string swapped = std::string(cases[second].text) + cases[first].text;
            EXPECT_EQ(schemeNumber(inOrder.c_str()), cases[first].number) << inOrder;
            EXPECT_EQ(schemeNumber(swapped.c_str()), cases[first].number) << swapped;
        }
    }
}

TEST(Keyword, AosIsTestedBeforeAmos) {
    EXPECT_EQ(schemeNumber("AMOS"), 21);
    EXPECT_EQ(schemeNumber("AOS"), 20);
    EXPECT_EQ(schemeNumber("AOSAMOS"), 20);
    EXPECT_EQ(schemeNumber("AMOSAOS"), 20);
}

TEST(Keyword, UnknownSchemeIsAos) {
    for (const char* text : {"", " ", "aos", "lod", "2Dsemi", "2D", "AO S", "AMO"}) {
        EXPECT_EQ(schemeNumber(text), 20) << text;
    }
}

TEST(Keyword, EveryFlowLiteralIsFound) {
    const Case cases[] = {{"PM", 1},   {"WE2", 11}, {"WE3", 12}, {"WE4", 13}, {"WE", 10},
                          {"VAR", 20}, {"TV", 21},  {"WE5", 10}, {"xPMx", 1}, {"aTVb", 21}};
    for (const Case& c : cases) {
        EXPECT_EQ(restorationFlowNumber(c.text), c.number) << c.text;
        EXPECT_EQ(denoiserFlowNumber(c.text), c.number) << c.text;
    }
}

TEST(Keyword, EarlierFlowOfTheTableWinsInEveryPair) {
    const Case cases[] = {{"PM", 1},  {"WE2", 11}, {"WE3", 12}, {"WE4", 13},
                          {"WE", 10}, {"VAR", 20}, {"TV", 21}};
    for (int first = 0; first < 7; ++first) {
        for (int second = first; second < 7; ++second) {
            const std::string inOrder =
                std::string(cases[first].text) + "," + cases[second].text;
            const std::string swapped =
                std::string(cases[second].text) + "," + cases[first].text;
            EXPECT_EQ(restorationFlowNumber(inOrder.c_str()), cases[first].number) << inOrder;
            EXPECT_EQ(denoiserFlowNumber(swapped.c_str()), cases[first].number) << swapped;
        }
    }
}

TEST(Keyword, LongerWeickertKeywordsAreTestedBeforeTheShortOne) {
    EXPECT_EQ(restorationFlowNumber("xWE2WE"), 11);
    EXPECT_EQ(restorationFlowNumber("WE WE4"), 13);
    EXPECT_EQ(restorationFlowNumber("WE3WE2"), 11);
}

TEST(Keyword, ShrinkageKeywordsAreFoundInTheirOrder) {
    EXPECT_EQ(shrinkageNumber("SureShrink"), 0);
    EXPECT_EQ(shrinkageNumber("VisuShrink"), 1);
    EXPECT_EQ(shrinkageNumber("Brownian"), 2);
    EXPECT_EQ(shrinkageNumber("BrownianVisuShrinkSureShrink"), 0);
    EXPECT_EQ(shrinkageNumber("xBrownianVisuShrink"), 1);
    EXPECT_EQ(shrinkageNumber("sureshrink Visu brownian"), 0);
}

TEST(Keyword, UnknownFlowDependsOnTheExport) {
    for (const char* text : {"", " ", "pm", "we", "var", "V", "W E", "T V"}) {
        EXPECT_EQ(restorationFlowNumber(text), 1) << text;
        EXPECT_EQ(denoiserFlowNumber(text), 20) << text;
    }
}

}  // namespace
}  // namespace orv
