#include "methods/json_text.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(JsonText, IndentsObjectsAndArrays) {
    JsonText json;
    json.beginArray();
    json.beginObject();
    json.member("name", "x");
    json.memberNumber("value", 0.5);
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
              "    \"on\": true,\n"
              "    \"empty\": [],\n"
              "    \"words\": [\n"
              "      \"a\",\n"
              "      \"b\"\n"
              "    ]\n"
              "  }\n"
              "]\n");
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
