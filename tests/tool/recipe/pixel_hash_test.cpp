#include "recipe/pixel_hash.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orv::cli {
namespace {

InterleavedSamples picture(int width, int height, int channels, SampleDepth depth,
                           std::vector<unsigned char> bytes) {
    return {width, height, channels, depth, std::move(bytes)};
}

// The digits were made by `xxhsum -H2` from files of 16 bytes of head and the samples.

TEST(PixelHash, IsThatOfTheDescribedBytes) {
    EXPECT_EQ(pixelHash(picture(2, 1, 3, SampleDepth::Bits8, {0, 1, 2, 253, 254, 255})),
              "xxh3-128:972b078c2ae70b7bbe53fb06c8dd7882");

    // More than the hash takes in one go.
    std::vector<unsigned char> many(300 * 200 * 3);
    for (std::size_t i = 0; i < many.size(); ++i) {
        many[i] = static_cast<unsigned char>(i * 7 + i / 256);
    }
    EXPECT_EQ(pixelHash(picture(300, 200, 3, SampleDepth::Bits8, many)),
              "xxh3-128:f083e02dbb5c72017e60d5be5c192238");
}

TEST(PixelHash, TakesTheLowestByteOfASampleFirst) {
    const std::uint16_t deep[2] = {258, 65535};
    std::vector<unsigned char> deepBytes(sizeof(deep));
    std::memcpy(deepBytes.data(), deep, sizeof(deep));
    const float half = 0.5F;
    std::vector<unsigned char> halfBytes(sizeof(half));
    std::memcpy(halfBytes.data(), &half, sizeof(half));

    EXPECT_EQ(pixelHash(picture(2, 1, 1, SampleDepth::Bits16, deepBytes)),
              "xxh3-128:181d8e76e602334810e339a99950541e");
    EXPECT_EQ(pixelHash(picture(1, 1, 1, SampleDepth::Float, halfBytes)),
              "xxh3-128:27cdbdd3ea63ed56ca81f97a6c1621b3");
}

TEST(PixelHash, TellsFormsOfTheSameBytesApart) {
    const std::vector<unsigned char> bytes(12, 7);
    const std::string hash = pixelHash(picture(2, 2, 3, SampleDepth::Bits8, bytes));

    EXPECT_EQ(pixelHash(picture(2, 2, 3, SampleDepth::Bits8, bytes)), hash);
    EXPECT_NE(pixelHash(picture(4, 1, 3, SampleDepth::Bits8, bytes)), hash);
    EXPECT_NE(pixelHash(picture(1, 4, 3, SampleDepth::Bits8, bytes)), hash);
    EXPECT_NE(pixelHash(picture(4, 3, 1, SampleDepth::Bits8, bytes)), hash);
    EXPECT_NE(pixelHash(picture(2, 1, 3, SampleDepth::Bits16, bytes)), hash);
}

TEST(PixelHash, ChangesWithEverySample) {
    std::vector<unsigned char> bytes(12, 7);
    const std::string hash = pixelHash(picture(2, 2, 3, SampleDepth::Bits8, bytes));

    for (unsigned char& byte : bytes) {
        byte ^= 1U;
        EXPECT_NE(pixelHash(picture(2, 2, 3, SampleDepth::Bits8, bytes)), hash);
        byte ^= 1U;
    }
}

TEST(PixelHash, IsToldFromOtherTexts) {
    EXPECT_TRUE(isPixelHash("xxh3-128:972b078c2ae70b7bbe53fb06c8dd7882"));
    EXPECT_FALSE(isPixelHash("xxh3-128:972b078c2ae70b7bbe53fb06c8dd788"));
    EXPECT_FALSE(isPixelHash("xxh3-128:972b078c2ae70b7bbe53fb06c8dd788G"));
    EXPECT_FALSE(isPixelHash("md5:972b078c2ae70b7bbe53fb06c8dd7882"));
    EXPECT_FALSE(isPixelHash(""));
}

TEST(PixelHash, StandsAmongTheFacts) {
    const InterleavedSamples samples =
        picture(2, 1, 3, SampleDepth::Bits8, {0, 1, 2, 253, 254, 255});

    const PictureFacts facts = pictureFacts("a.png", samples);

    EXPECT_EQ(facts.file, "a.png");
    EXPECT_EQ(facts.width, 2);
    EXPECT_EQ(facts.height, 1);
    EXPECT_EQ(facts.channels, 3);
    EXPECT_EQ(facts.bits, 8);
    EXPECT_EQ(facts.pixels, pixelHash(samples));
}

}  // namespace
}  // namespace orv::cli
