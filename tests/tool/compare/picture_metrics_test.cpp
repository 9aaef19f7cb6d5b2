#include "compare/picture_metrics.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tool/compare/compare_support.h"

namespace orv::cli {
namespace {

using test::Bytes;
using test::pictureOf;
using test::Shorts;

TEST(PictureMetrics, FiguresOfTwoByTwoGreySamples) {
    const Picture before = pictureOf(2, 2, 1, Bytes{10, 20, 30, 40});
    const Picture after = pictureOf(2, 2, 1, Bytes{10, 23, 26, 40});

    const PictureComparison comparison = comparePictures(before, after);

    ASSERT_EQ(comparison.channels.size(), 1u);
    EXPECT_EQ(comparison.channels[0].name, "grey");
    const DifferenceFigures& figures = comparison.figures;
    EXPECT_EQ(figures.meanSquare, (9.0 + 16.0) / 4.0);
    EXPECT_EQ(figures.mean, 7.0 / 4.0);
    EXPECT_EQ(figures.shift, -1.0 / 4.0);
    EXPECT_EQ(figures.largest, 4.0);
    EXPECT_EQ(figures.changed, 0.5);
    EXPECT_DOUBLE_EQ(figures.psnr(), 10.0 * std::log10(65025.0 / 6.25));
    EXPECT_FALSE(comparison.identical());
}

TEST(PictureMetrics, ColoursCountAloneAndTogether) {
    const Picture before = pictureOf(2, 1, 3, Bytes{0, 100, 200, 0, 100, 200});
    const Picture after = pictureOf(2, 1, 3, Bytes{0, 110, 200, 0, 110, 170});

    const PictureComparison comparison = comparePictures(before, after);

    ASSERT_EQ(comparison.channels.size(), 3u);
    EXPECT_EQ(comparison.channels[0].figures.changed, 0.0);
    EXPECT_TRUE(std::isinf(comparison.channels[0].figures.psnr()));
    EXPECT_EQ(comparison.channels[1].figures.meanSquare, 100.0);
    EXPECT_EQ(comparison.channels[2].figures.meanSquare, 450.0);
    EXPECT_EQ(comparison.figures.meanSquare, (200.0 + 900.0) / 6.0);
    EXPECT_EQ(comparison.figures.largest, 30.0);
    EXPECT_EQ(comparison.figures.changed, 0.5);
}

TEST(PictureMetrics, EqualPicturesAreIdentical) {
    const Picture picture = pictureOf(3, 1, 1, Bytes{0, 128, 255});

    const PictureComparison comparison = comparePictures(picture, picture);

    EXPECT_TRUE(comparison.identical());
    EXPECT_TRUE(std::isinf(comparison.figures.psnr()));
    EXPECT_EQ(comparison.differenceOfShare(1.0), 0);
    EXPECT_TRUE(std::isnan(comparison.ssim));
}

TEST(PictureMetrics, DepthsShareOneScaleExactly) {
    Bytes bytes;
    Shorts shorts;
    for (int level = 0; level < 256; ++level) {
        bytes.push_back(static_cast<unsigned char>(level));
        shorts.push_back(static_cast<unsigned short>(257 * level));
    }
    const Picture narrow = pictureOf(256, 1, 1, bytes);
    Picture wide = pictureOf(256, 1, 1, shorts);
    EXPECT_TRUE(comparePictures(narrow, wide).identical());

    shorts[7] += 1;
    wide = pictureOf(256, 1, 1, shorts);
    const PictureComparison comparison = comparePictures(narrow, wide);

    // A level of 16 bits is a 257th of one of 8; 7 + 1/257 is known to some 1e-15.
    EXPECT_NEAR(comparison.figures.largest, 1.0 / 257.0, 1e-14);
    EXPECT_EQ(comparison.figures.changed, 1.0 / 256.0);
    EXPECT_EQ(comparison.channels[0].differences[255], 256u);
}

TEST(PictureMetrics, FloatWhiteIsWhite) {
    const Picture floats = pictureOf(2, 1, 1, std::vector<float>{0.0f, 1.0f});
    EXPECT_TRUE(comparePictures(floats, pictureOf(2, 1, 1, Bytes{0, 255})).identical());
}

TEST(PictureMetrics, GreyAgainstColourIsThreeEqualChannels) {
    const Picture grey = pictureOf(2, 1, 1, Bytes{50, 60});
    const Picture colour = pictureOf(2, 1, 3, Bytes{50, 50, 50, 60, 60, 63});

    const PictureComparison comparison = comparePictures(grey, colour);

    ASSERT_EQ(comparison.channels.size(), 3u);
    EXPECT_EQ(comparison.channels[0].figures.changed, 0.0);
    EXPECT_EQ(comparison.channels[2].figures.largest, 3.0);
    EXPECT_EQ(comparison.figures.changed, 1.0 / 6.0);
}

TEST(PictureMetrics, AlphaIsToldApart) {
    const Picture opaque = pictureOf(1, 1, 2, Bytes{9, 255});
    const Picture clear = pictureOf(1, 1, 2, Bytes{9, 3});
    const Picture plain = pictureOf(1, 1, 1, Bytes{9});
    const Picture wide = pictureOf(1, 1, 2, Shorts{9 * 257, 65535});

    EXPECT_EQ(comparePictures(plain, plain).alpha, AlphaComparison::None);
    EXPECT_EQ(comparePictures(opaque, opaque).alpha, AlphaComparison::Equal);
    EXPECT_EQ(comparePictures(opaque, wide).alpha, AlphaComparison::Equal);
    EXPECT_EQ(comparePictures(opaque, clear).alpha, AlphaComparison::Differs);
    EXPECT_EQ(comparePictures(opaque, plain).alpha, AlphaComparison::OnlyBefore);
    EXPECT_EQ(comparePictures(plain, opaque).alpha, AlphaComparison::OnlyAfter);
    EXPECT_TRUE(comparePictures(opaque, clear).identical());
}

TEST(PictureMetrics, HistogramsCountEverySample) {
    const Picture before = pictureOf(4, 1, 1, Bytes{0, 0, 255, 255});
    const Picture after = pictureOf(4, 1, 1, Bytes{0, 255, 0, 254});

    const ChannelComparison channel = comparePictures(before, after).channels[0];

    EXPECT_EQ(channel.differences[255], 1u);
    EXPECT_EQ(channel.differences[510], 1u);
    EXPECT_EQ(channel.differences[0], 1u);
    EXPECT_EQ(channel.differences[254], 1u);
    EXPECT_EQ(channel.before[0], 2u);
    EXPECT_EQ(channel.before[255], 2u);
    EXPECT_EQ(channel.after[254], 1u);
}

TEST(PictureMetrics, HistogramsRoundFractionsToTheNearestLevel) {
    // 154 and 103 of 257 are 0.6 and 0.4 of a level.
    const Picture before = pictureOf(4, 1, 1, Shorts{2570, 2570, 2570, 2570});
    const Picture after = pictureOf(4, 1, 1, Shorts{2724, 2673, 2416, 2467});

    const ChannelComparison channel = comparePictures(before, after).channels[0];

    EXPECT_EQ(channel.differences[256], 1u);
    EXPECT_EQ(channel.differences[255], 2u);
    EXPECT_EQ(channel.differences[254], 1u);
    EXPECT_EQ(channel.after[11], 1u);
    EXPECT_EQ(channel.after[10], 2u);
    EXPECT_EQ(channel.after[9], 1u);
}

TEST(PictureMetrics, DifferenceOfAShareIsTheSmallestThatHoldsIt) {
    const Picture before = pictureOf(4, 1, 1, Bytes{0, 0, 0, 9});
    const Picture after = pictureOf(4, 1, 1, Bytes{0, 2, 3, 0});

    const PictureComparison comparison = comparePictures(before, after);

    EXPECT_EQ(comparison.differenceOfShare(0.25), 0);
    EXPECT_EQ(comparison.differenceOfShare(0.5), 2);
    EXPECT_EQ(comparison.differenceOfShare(0.51), 3);
    EXPECT_EQ(comparison.differenceOfShare(1.0), 9);
}

TEST(PictureMetrics, SizesThatDifferAreRefused) {
    const Picture small = pictureOf(2, 1, 1, Bytes{1, 2});
    const Picture tall = pictureOf(1, 2, 1, Bytes{1, 2});

    EXPECT_EQ(sizeRefusal("a", small, "b", small), "");
    EXPECT_EQ(sizeRefusal("a", small, "b", tall),
              "a has 2 x 1 pixels and b has 1 x 2 pixels; pictures of one size can be "
              "compared");
}

}  // namespace
}  // namespace orv::cli
