#include "methods/json_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace orv {
namespace {

TEST(JsonText, IndentsObjectsAndArrays) {
    JsonText json;
    json.beginArray();
    json.beginObject();
    json.member("name", "x");
    json.memberNumber("value", 0.5);
    json.memberDigits("whole", "1000000");
    json.memberBool("on", true);
    json.beginArray("empty");
    json.end();
    json.beginArray("words");
    json.element("a");
    json.element("b");
    json.end();
    json.end();
    json.end();

    EXPECT_EQ(json.take(),
              "[\n"
              "  {\n"
              "    \"name\": \"x\",\n"
              "    \"value\": 0.5,\n"
              "    \"whole\": 1000000,\n"
              "    \"on\": true,\n"
              "    \"empty\": [],\n"
              "    \"words\": [\n"
              "      \"a\",\n"
              "      \"b\"\n"
              "    ]\n"
              "  }\n"
              "]\n");
}

TEST(JsonText, WritesNumbersInOneLine) {
    JsonText json;
    json.beginObject();
    json.memberNumbers("none", {});
    json.memberNumbers("some", std::array<double, 3>{1.0, 0.5, std::nan("")});
    json.end();

    EXPECT_EQ(json.take(),
              "{\n"
              "  \"none\": [],\n"
              "  \"some\": [1, 0.5, null]\n"
              "}\n");
}

TEST(JsonText, EscapesQuotesBackslashesAndControls) {
    JsonText json;
    json.beginArray();
    json.element("a\"b\\c\nd");
    json.end();

    EXPECT_EQ(json.take(), "[\n  \"a\\\"b\\\\c\\u000ad\"\n]\n");
}

}  // namespace
}  // namespace orv
