#include "drawing/label.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "drawing/label_font.h"

namespace orv::cli {
namespace {

constexpr Colour kWhite{255, 255, 255};
constexpr Colour kBlack{0, 0, 0};

/// A text as rows of '#' and '.', without the empty rows around it.
std::string drawn(const std::string& text, int scale = 1) {
    const int width = std::max(1, labelWidth(text, scale));
    Canvas canvas(width, labelHeight(scale), kWhite);
    drawLabel(canvas, 0, 0, text, kBlack, scale);
    const Picture picture = canvas.take();
    std::string all;
    for (int y = 0; y < picture.samples.height; ++y) {
        std::string row;
        for (int x = 0; x < width; ++x) {
            row += picture.samples.bytes[static_cast<std::size_t>(3 * (y * width + x))] == 0
                       ? '#'
                       : '.';
        }
        if (row.find('#') != row.npos) {
            all += row + "\n";
        }
    }
    return all;
}

TEST(Label, DrawsTheGlyph) {
    EXPECT_EQ(drawn("L"),
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".##.......\n"
              ".########.\n");
}

TEST(Label, ScalesByWholePixels) {
    EXPECT_EQ(labelWidth("ab", 3), 2 * kGlyphWidth * 3);
    EXPECT_EQ(labelHeight(3), 3 * kGlyphHeight);
    EXPECT_EQ(drawn("-", 2).substr(0, 20), "..################..");
}

TEST(Label, CountsCharactersAndNotBytes) {
    EXPECT_EQ(labelWidth("\u00e4\u0416\u20ac", 1), 3 * kGlyphWidth);
    EXPECT_NE(drawn("\u00e4"), drawn("a"));
    EXPECT_NE(drawn("\u0416"), drawn("\u03a9"));
}

TEST(Label, UnknownCharactersAndStrayBytesAreBoxes) {
    const std::string box = drawn("\u4e2d");
    EXPECT_EQ(std::count(box.begin(), box.end(), '\n'), 13);
    EXPECT_EQ(drawn("\xff"), box);
    EXPECT_EQ(labelWidth("a\xe4z", 1), 3 * kGlyphWidth);
    EXPECT_EQ(labelWidth("\xe2\x82", 1), 2 * kGlyphWidth);
}

TEST(Label, DrawsNothingOutsideTheCanvas) {
    Canvas canvas(5, 5, kWhite);
    drawLabel(canvas, -4, -9, "MMM", kBlack, 2);
    EXPECT_EQ(canvas.take().samples.bytes.size(), 75u);
}

TEST(Label, GlyphsRiseAndAreWhole) {
    for (const auto glyphs : {latinGlyphs(), greekAndCyrillicGlyphs()}) {
        for (std::size_t i = 0; i < glyphs.size(); ++i) {
            EXPECT_EQ(std::string(glyphs[i].rows).size(), 60u);
            EXPECT_EQ(std::string(glyphs[i].rows).find_first_not_of("0123456789abcdef"),
                      std::string::npos);
            EXPECT_TRUE(i == 0 || glyphs[i - 1].code < glyphs[i].code);
        }
    }
}

TEST(Label, LongNamesKeepBothEnds) {
    EXPECT_EQ(fittingLabel("photo.png", 90, 1), "photo.png");
    EXPECT_EQ(fittingLabel("photograph.png", 100, 1), "phot...png");
    EXPECT_EQ(fittingLabel("photograph.png", 100, 2), "p...g");
    EXPECT_EQ(fittingLabel("photograph.png", 20, 1), "..");
    EXPECT_EQ(fittingLabel("\u00e4\u00e4\u00e4\u00e4\u00f6\u00f6", 50, 1), "\u00e4...\u00f6");
}

}  // namespace
}  // namespace orv::cli
