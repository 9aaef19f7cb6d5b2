#include "recipe/json_value.h"

#include <gtest/gtest.h>

#include <array>

namespace orv::cli {
namespace {

std::string errorOf(std::string_view text) {
    JsonValue value;
    return parseJson(text, value);
}

std::string repeated(std::string_view part, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

TEST(JsonValue, KeepsWhatTheTextHolds) {
    JsonValue value;

    ASSERT_EQ(parseJson(R"({"a": [1, -2, 0.10, 1e3, true, null], "b": "h\u00e9"})", value), "");

    ASSERT_EQ(value.kind, JsonValue::Kind::Object);
    const JsonValue* const list = value.member("a");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->children.size(), 6U);
    constexpr std::array<std::string_view, 6> kTexts{"1", "-2", "0.10", "1e3", "true", ""};
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        EXPECT_EQ(list->children[i].text, kTexts[i]);
    }
    ASSERT_NE(value.member("b"), nullptr);
    EXPECT_EQ(value.member("b")->text, "h\xC3\xA9");
    EXPECT_EQ(value.member("c"), nullptr);
}

TEST(JsonValue, StaysWhenTheTextIsRefused) {
    JsonValue value;
    ASSERT_EQ(parseJson("7", value), "");

    EXPECT_NE(parseJson("[8, ", value), "");

    EXPECT_EQ(value.text, "7");
}

TEST(JsonValue, NamesTheLineAndColumnOfASlip) {
    EXPECT_EQ(errorOf("{\n  \"a\": 1,\n}"),
              "line 3, column 1: nothing follows the comma before this bracket");
    EXPECT_EQ(errorOf("[1, 2,]"),
              "line 1, column 7: nothing follows the comma before this bracket");
    EXPECT_EQ(errorOf("{\n  'a': 1}"),
              "line 2, column 3: names and texts stand between double quotes");
    EXPECT_EQ(errorOf("{a: 1}"),
              "line 1, column 2: a name between double quotes is expected here");
    EXPECT_EQ(errorOf("{\"a\" 1}"),
              "line 1, column 6: a colon is expected between a name and its value");
    EXPECT_EQ(errorOf("{\"a\": 1 // one\n}"),
              "line 1, column 9: JSON has no comments; \"description\" takes a line of words");
    EXPECT_EQ(errorOf("[1] 2"),
              "line 1, column 5: something stands after the end of the recipe");
    EXPECT_EQ(errorOf("{\"a\": AOS}"),
              "line 1, column 7: this is no value (texts stand between double quotes)");
}

TEST(JsonValue, NamesWhatIsMissing) {
    EXPECT_EQ(errorOf("[1 2]"),
              "line 1, column 4: a comma or a closing bracket is missing before this");
    EXPECT_EQ(errorOf("{\"a\": 1\n \"b\": 2}").substr(0, 6), "line 2");
    EXPECT_EQ(
        errorOf("{\"a\": 1\n"),
        "line 2, column 1: the file ends too early; a closing bracket or more is missing");
    EXPECT_EQ(errorOf("[\"a"),
              "line 1, column 4: the file ends within a text; its closing quote is missing");
}

TEST(JsonValue, RefusesWhatNoTextMayHold) {
    EXPECT_EQ(errorOf("[\"a\xFFz\"]"), "line 1, column 4: the text is no UTF-8");
    EXPECT_EQ(errorOf("[\"a\nb\"]").substr(0, 60),
              "line 1, column 4: a text may not hold a line break or contro");
    EXPECT_EQ(errorOf("[\"\\x\"]"),
              "line 1, column 4: the text holds an escape that JSON doesn't know");
    EXPECT_EQ(errorOf("[1e999]"), "line 1, column 6: the number is too large");
    EXPECT_NE(errorOf("[NaN]"), "");
    EXPECT_NE(errorOf("[01]"), "");
}

TEST(JsonValue, RefusesTheSameNameTwice) {
    EXPECT_EQ(errorOf(R"({"s": [{}, {"a": {"t": 1, "t": 2}}]})"),
              "s[1].a.t: stands there twice");
    EXPECT_EQ(errorOf(R"([{"t": 1}, {"t": 2}])"), "");
}

TEST(JsonValue, RefusesBombs) {
    EXPECT_EQ(errorOf(repeated("[", 16) + repeated("]", 16)), "");
    EXPECT_EQ(errorOf(repeated("[", 500000)),
              repeated("[0]", 16) + ": nests deeper than 16 levels");
    EXPECT_NE(errorOf(repeated("{\"a\":", 100000)).find("nests deeper"), std::string::npos);
    EXPECT_EQ(errorOf("[" + repeated("1,", 400000) + "1]"),
              "[1000]: one value too many; 1000 is the most");
    EXPECT_EQ(errorOf("[" + repeated("1,", 999) + "1]"), "");
}

TEST(JsonValue, ShowsLongTextsShortened) {
    EXPECT_EQ(shownText("short"), "short");
    EXPECT_EQ(shownText(std::string(61, 'a')), std::string(60, 'a') + "...");
    // Not cut within a character.
    EXPECT_EQ(shownText(std::string(59, 'a') + "\xC3\xA9\xC3\xA9"),
              std::string(59, 'a') + "...");
}

}  // namespace
}  // namespace orv::cli
