#include "methods/interleaved_planes.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orv {
namespace {

InterleavedSamples picture(int width, int height, int channels, SampleDepth depth) {
    InterleavedSamples samples{width, height, channels, depth, {}};
    const std::size_t count = static_cast<std::size_t>(width) *
                              static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(channels);
    samples.bytes.resize(count * bytesOf(depth));
    for (std::size_t i = 0; i < count; ++i) {
        const auto word = static_cast<unsigned short>((i * 40503U + 17U) & 0xffffU);
        const float real = static_cast<float>(word) / 65535.0f;
        switch (depth) {
            case SampleDepth::Bits8:
                samples.bytes[i] = static_cast<unsigned char>(word >> 8);
                break;
            case SampleDepth::Bits16:
                std::memcpy(&samples.bytes[2 * i], &word, sizeof word);
                break;
            case SampleDepth::Float:
                std::memcpy(&samples.bytes[4 * i], &real, sizeof real);
                break;
        }
    }
    return samples;
}

TEST(InterleavedPlanes, EightAndSixteenBitsComeBackAsTheyWere) {
    for (const SampleDepth depth : {SampleDepth::Bits8, SampleDepth::Bits16}) {
        for (const int channels : {1, 2, 3, 4}) {
            SCOPED_TRACE(channels);
            const InterleavedSamples before = picture(67, 35, channels, depth);
            const int colours = channels < 3 ? 1 : 3;
            const Planes planes = planesOf(before, colours);
            InterleavedSamples after = before;
            std::fill(after.bytes.begin(), after.bytes.end(), static_cast<unsigned char>(0));
            const InterleavedSamples blank = after;

            storePlanes(planes, after);

            ASSERT_EQ(planes.size(), static_cast<std::size_t>(colours));
            const std::size_t pixel = static_cast<std::size_t>(channels) * bytesOf(depth);
            const std::size_t kept = static_cast<std::size_t>(colours) * bytesOf(depth);
            for (std::size_t i = 0; i < before.bytes.size(); ++i) {
                const unsigned char expected =
                    i % pixel < kept ? before.bytes[i] : blank.bytes[i];
                ASSERT_EQ(after.bytes[i], expected) << i;
            }
        }
    }
}

TEST(InterleavedPlanes, EverySixteenBitValueSurvives) {
    InterleavedSamples samples{256, 256, 1, SampleDepth::Bits16, {}};
    samples.bytes.resize(2U * 65536U);
    for (std::size_t i = 0; i < 65536U; ++i) {
        const auto word = static_cast<unsigned short>(i);
        std::memcpy(&samples.bytes[2 * i], &word, sizeof word);
    }
    InterleavedSamples after = samples;

    storePlanes(planesOf(samples, 1), after);

    EXPECT_EQ(after.bytes, samples.bytes);
}

TEST(InterleavedPlanes, WhiteIs255InEveryDepth) {
    InterleavedSamples samples{1, 1, 1, SampleDepth::Bits16, {0xff, 0xff}};
    EXPECT_EQ(planesOf(samples, 1)[0]->row(0)[0], 255.0f);

    const float white = 1.0f;
    samples.depth = SampleDepth::Float;
    samples.bytes.resize(4);
    std::memcpy(samples.bytes.data(), &white, 4);
    EXPECT_EQ(planesOf(samples, 1)[0]->row(0)[0], 255.0f);
}

TEST(InterleavedPlanes, PlanesAreIndexedByColumnThenRow) {
    const InterleavedSamples samples{2, 2, 1, SampleDepth::Bits8, {1, 2, 3, 4}};

    const Planes planes = planesOf(samples, 1);

    EXPECT_EQ(planes[0]->row(1)[0], 2.0f);
    EXPECT_EQ(planes[0]->row(0)[1], 3.0f);
}

TEST(InterleavedPlanes, StoresTheNearestValue) {
    InterleavedSamples samples{4, 1, 1, SampleDepth::Bits8, {0, 0, 0, 0}};
    Planes planes = planesOf(samples, 1);
    planes[0]->row(0)[0] = 0.49f;
    planes[0]->row(1)[0] = 0.5f;
    planes[0]->row(2)[0] = 254.6f;
    planes[0]->row(3)[0] = 255.0f;

    storePlanes(planes, samples);

    EXPECT_EQ(samples.bytes, (std::vector<unsigned char>{0, 1, 255, 255}));
}

TEST(InterleavedPlanes, ColouredRepeatsTheGreyAndKeepsTheAlpha) {
    const InterleavedSamples bytes{2, 1, 2, SampleDepth::Bits8, {10, 255, 20, 128}};
    const InterleavedSamples colour = coloured(bytes);
    EXPECT_EQ(colour.channels, 4);
    EXPECT_EQ(colour.bytes, (std::vector<unsigned char>{10, 10, 10, 255, 20, 20, 20, 128}));

    InterleavedSamples words{1, 1, 1, SampleDepth::Bits16, std::vector<unsigned char>(2)};
    const unsigned short grey = 40000;
    std::memcpy(words.bytes.data(), &grey, sizeof grey);
    const InterleavedSamples wide = coloured(words);
    ASSERT_EQ(wide.bytes.size(), 6U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(std::memcmp(wide.bytes.data() + 2 * i, &grey, sizeof grey), 0);
    }
}

TEST(InterleavedPlanes, NarrowingRoundsToNearest) {
    InterleavedSamples samples{3, 1, 1, SampleDepth::Bits16, std::vector<unsigned char>(6)};
    const unsigned short words[3] = {128, 129, 65535};
    std::memcpy(samples.bytes.data(), words, sizeof words);

    const InterleavedSamples result = narrowed(samples);

    EXPECT_EQ(result.depth, SampleDepth::Bits8);
    EXPECT_EQ(result.bytes, (std::vector<unsigned char>{0, 1, 255}));
}

}  // namespace
}  // namespace orv
