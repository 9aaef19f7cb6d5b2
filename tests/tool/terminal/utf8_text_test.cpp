#include "terminal/utf8_text.h"

#include <gtest/gtest.h>

#include "recipe/json_value.h"

namespace orv::cli {
namespace {

TEST(Utf8Text, IsCleanOfWhatIsNoUtf8) {
    const std::string mark = "\xEF\xBF\xBD";

    EXPECT_EQ(cleanUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB7z"),
              "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB7z");
    EXPECT_EQ(cleanUtf8("a\xFFz"), "a" + mark + "z");
    EXPECT_EQ(cleanUtf8("\xC3"), mark);                        // cut short
    EXPECT_EQ(cleanUtf8("\xC0\xAF"), mark + mark);             // too long a form
    EXPECT_EQ(cleanUtf8("\xED\xA0\x80"), mark + mark + mark);  // half of a pair
    EXPECT_EQ(cleanUtf8("\xF4\x90\x80\x80"),
              mark + mark + mark + mark);  // beyond the last character
    EXPECT_EQ(cleanUtf8("a\xFFz", "?"), "a?z");
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string bytes{static_cast<char>(first), static_cast<char>(second), 'x',
                                    '\x80'};
            JsonValue value;
            if (first >= 0x20 && second >= 0x20) {
                const std::string clean = cleanUtf8(bytes);
                const bool special = clean.find_first_of("\"\\") != std::string::npos;
                EXPECT_TRUE(special || parseJson("\"" + clean + "\"", value).empty());
            }
        }
    }
}

}  // namespace
}  // namespace orv::cli
