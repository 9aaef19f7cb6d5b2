#include "compare/shown_picture.h"

#include <gtest/gtest.h>

#include "compare/comparison_page.h"
#include "tool/compare/compare_support.h"

namespace orv::cli {
namespace {

using test::Bytes;
using test::pictureOf;
using test::Shorts;

TEST(ShownPicture, KeepsSamplesOfEightBits) {
    const Picture picture = pictureOf(2, 1, 4, Bytes{1, 2, 3, 99, 4, 5, 6, 99});

    const Picture shown = shownPicture(picture, 1);

    EXPECT_EQ(shown.samples.bytes, (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_FALSE(shown.alpha);
    EXPECT_EQ(shown.samples.channels, 3);
}

TEST(ShownPicture, RoundsSixteenBits) {
    const Picture picture = pictureOf(3, 1, 1, Shorts{128, 129, 65535});
    EXPECT_EQ(shownPicture(picture, 1).samples.bytes, (Bytes{0, 1, 255}));
}

TEST(ShownPicture, ReducesByMeansAlsoAtTheEdges) {
    const Picture picture = pictureOf(3, 3, 1, Bytes{0, 10, 40, 20, 30, 60, 5, 6, 7});

    const Picture shown = shownPicture(picture, 2);

    EXPECT_EQ(shown.samples.width, 2);
    EXPECT_EQ(shown.samples.height, 2);
    EXPECT_EQ(shown.samples.bytes, (Bytes{15, 50, 6, 7}));
}

TEST(ShownPicture, DifferenceIsAmplifiedAndEndsAtWhite) {
    const Picture before = pictureOf(3, 1, 1, Bytes{10, 10, 200});
    const Picture after = pictureOf(3, 1, 1, Bytes{10, 7, 100});
    EXPECT_EQ(shownDifference(before, after, 1, 4.0).samples.bytes, (Bytes{0, 12, 255}));
}

TEST(ShownPicture, DifferenceOfGreyAndColourHasColour) {
    const Picture grey = pictureOf(1, 1, 1, Bytes{10});
    const Picture colour = pictureOf(1, 1, 3, Bytes{10, 12, 7});
    const Picture difference = shownDifference(grey, colour, 1, 1.0);
    EXPECT_EQ(difference.samples.bytes, (Bytes{0, 2, 3}));
    EXPECT_EQ(shownMean(difference).samples.bytes, (Bytes{2}));
}

TEST(ShownPicture, ReductionsAreTheSmallestThatFit) {
    Picture picture;
    picture.samples.width = 1601;
    picture.samples.height = 10;
    EXPECT_EQ(reductionForSide(picture, 1601), 1);
    EXPECT_EQ(reductionForSide(picture, 1600), 2);
    EXPECT_EQ(reductionForPixels(picture, 16010.0), 1);
    EXPECT_EQ(reductionForPixels(picture, 16009.0), 2);
    EXPECT_EQ(reductionForPixels(picture, 1.0), 1601);
}

TEST(ShownPicture, PartIsCutOut) {
    const Picture picture = pictureOf(3, 2, 1, Bytes{1, 2, 3, 4, 5, 6});
    EXPECT_EQ(partOfPicture(picture, 1, 0, 2, 2).samples.bytes, (Bytes{2, 3, 5, 6}));
}

TEST(ComparisonPage, Base64OfOneTwoAndThreeBytes) {
    // From RFC 4648, section 10.
    const auto coded = [](const std::string& text) {
        return base64(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    };
    EXPECT_EQ(coded(""), "");
    EXPECT_EQ(coded("f"), "Zg==");
    EXPECT_EQ(coded("fo"), "Zm8=");
    EXPECT_EQ(coded("foo"), "Zm9v");
    EXPECT_EQ(coded("foobar"), "Zm9vYmFy");
    EXPECT_EQ(coded("\xff\xef\xbe"), "/+++");
}

}  // namespace
}  // namespace orv::cli
