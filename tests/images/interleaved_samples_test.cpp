#include "images/interleaved_samples.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "support/kernel_targets.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::availableTargets;
using test::Noise;
using test::sameBits;
using test::TargetLimit;

constexpr std::array<std::pair<int, int>, 5> kSizes = {
    {{1, 1}, {63, 65}, {200, 3}, {3, 200}, {130, 66}}};

/// Runs body(width, height, channels, rowStride) on every target, size and channel count.
template <class Body>
void onEveryTarget(Body body) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const auto& [width, height] : kSizes) {
            for (const int channels : {1, 2, 3, 4}) {
                SCOPED_TRACE(testing::Message() << nameOf(target) << ", " << width << " x "
                                                << height << " x " << channels);
                body(width, height, channels,
                     static_cast<std::size_t>(width * channels + (height % 2) * 5));
            }
        }
    }
}

template <class Sample>
std::vector<Sample> noiseSamples(std::size_t count, unsigned seed) {
    std::vector<Sample> samples(count);
    Noise noise(seed);
    for (Sample& sample : samples) {
        sample = static_cast<Sample>(noise.bits());
    }
    return samples;
}

/// One sample as the header tells it, in the plainest way.
template <class Sample>
Sample written(float sample, float factor, float maxValue) {
    const float scaled = sample * factor;
    if (!(scaled > 0.0f)) {
        return 0;
    }
    const float limited = scaled < maxValue ? scaled : maxValue;
    if constexpr (std::is_same_v<Sample, float>) {
        return limited;
    } else {
        return static_cast<Sample>(std::floor(static_cast<double>(limited) + 0.5));
    }
}

template <class Sample>
void expectReadsEqualTheFormula(float factor) {
    onEveryTarget([factor](int width, int height, int channels, std::size_t rowStride) {
        const auto samples =
            noiseSamples<Sample>(rowStride * static_cast<std::size_t>(height), 1);
        for (int channel = 0; channel < channels; ++channel) {
            FloatImage plane(width, height, -1.0f);
            readInterleaved(
                channelGrid(samples.data(), channels, rowStride, channel, width, height),
                factor, plane);

            bool equal = true;
            for (int x = 0; x < width; ++x) {
                for (int y = 0; y < height; ++y) {
                    const std::size_t at = static_cast<std::size_t>(y) * rowStride +
                                           static_cast<std::size_t>(x * channels + channel);
                    equal &= plane.row(x)[y] == static_cast<float>(samples[at]) * factor;
                }
            }
            EXPECT_TRUE(equal) << channel;
        }
    });
}

template <class Sample>
void expectWritesEqualTheFormula(float factor, float maxValue) {
    onEveryTarget([=](int width, int height, int channels, std::size_t rowStride) {
        FloatImage plane = test::noisePlane(width, height, 2, -20.0, 300.0);
        const float special[] = {std::nanf(""),
                                 std::numeric_limits<float>::infinity(),
                                 -std::numeric_limits<float>::infinity(),
                                 0.49999997f,
                                 0.5f,
                                 254.5f,
                                 -0.0f,
                                 1e30f};
        for (std::size_t i = 0; i < plane.sampleCount() && i < 8; ++i) {
            plane.data()[i] = special[i];
        }
        auto expected = noiseSamples<Sample>(rowStride * static_cast<std::size_t>(height), 3);
        auto actual = expected;
        const int channel = channels - 1;
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                expected[static_cast<std::size_t>(y) * rowStride +
                         static_cast<std::size_t>(x * channels + channel)] =
                    written<Sample>(plane.row(x)[y], factor, maxValue);
            }
        }

        writeInterleaved(
            plane, factor, maxValue,
            channelGrid(actual.data(), channels, rowStride, channel, width, height));

        EXPECT_TRUE(sameBits(actual.data(), expected.data(), actual.size()));
    });
}

TEST(InterleavedSamples, ReadingEqualsTheFormulaForEverySampleType) {
    expectReadsEqualTheFormula<unsigned char>(1.0f);
    expectReadsEqualTheFormula<unsigned char>(257.0f);
    expectReadsEqualTheFormula<unsigned short>(255.0f / 65535.0f);
    expectReadsEqualTheFormula<float>(255.0f);
}

TEST(InterleavedSamples, WritingRoundsAndClampsEverySampleType) {
    expectWritesEqualTheFormula<unsigned char>(1.0f, 255.0f);
    expectWritesEqualTheFormula<unsigned char>(0.25f, 63.0f);
    expectWritesEqualTheFormula<unsigned short>(65535.0f / 255.0f, 65535.0f);
    expectWritesEqualTheFormula<float>(1.0f / 255.0f, 1.0f);
}

TEST(InterleavedSamples, SixteenBitSamplesComeBackAsTheyWere) {
    const int width = 256;
    const int height = 256;
    std::vector<unsigned short> samples(65536);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<unsigned short>(i);
    }
    auto back = std::vector<unsigned short>(65536, 7);
    FloatImage plane(width, height);

    readInterleaved(channelGrid<const unsigned short>(samples.data(), 1, 256, 0, width, height),
                    255.0f / 65535.0f, plane);
    writeInterleaved(plane, 65535.0f / 255.0f, 65535.0f,
                     channelGrid(back.data(), 1, 256, 0, width, height));

    EXPECT_EQ(back, samples);
}

TEST(InterleavedSamples, OnlyWhatGridAndPlaneBothCoverIsTouched) {
    const std::vector<unsigned char> samples(12, 9);
    FloatImage plane(2, 5, -1.0f);

    readInterleaved(channelGrid<const unsigned char>(samples.data(), 1, 4, 0, 4, 3), 1.0f,
                    plane);

    EXPECT_EQ(plane.row(1)[2], 9.0f);
    EXPECT_EQ(plane.row(1)[3], -1.0f);
}

}  // namespace
}  // namespace orv
