#include "images/kernels/pixel_kernels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "base/rounding.h"
#include "images/float_image3.h"
#include "images/image_support.h"
#include "images/real_image3.h"
#include "support/kernel_targets.h"

namespace orv {
namespace {

using test::availableTargets;
using test::Noise;
using test::noiseImage;
using test::rgbAt;
using test::sameBits;
using test::TargetLimit;

constexpr std::array<std::pair<int, int>, 9> kSizes = {
    {{1, 1}, {63, 65}, {200, 3}, {3, 200}, {64, 64}, {65, 1}, {1, 129}, {130, 127}, {31, 33}}};

/// Runs `body` once per kernel target of this machine and lifts the limit again.
template <class Body>
void onEveryTarget(Body body) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const auto& [width, height] : kSizes) {
            SCOPED_TRACE(testing::Message()
                         << nameOf(target) << ", " << width << " x " << height);
            body(width, height);
        }
    }
}

/// Samples at and around every border of the conversion to a low byte.
template <class Sample>
void fillWithDifficultSamples(Sample* samples, std::size_t count, unsigned seed) {
    const Sample infinity = std::numeric_limits<Sample>::infinity();
    const std::vector<Sample> special = {std::numeric_limits<Sample>::quiet_NaN(),
                                         infinity,
                                         -infinity,
                                         Sample(2147483648.0),
                                         std::nextafter(Sample(2147483648.0), Sample(0)),
                                         Sample(-2147483648.0),
                                         std::nextafter(Sample(-2147483648.0), -infinity),
                                         std::nextafter(Sample(-2147483648.0), infinity),
                                         Sample(-2147483648.5),
                                         Sample(-2147483649.0),
                                         Sample(2147483647.5),
                                         Sample(1e30),
                                         Sample(-1e30),
                                         Sample(-0.0),
                                         Sample(0.99999994),
                                         Sample(-0.9),
                                         Sample(255.99998),
                                         Sample(256.0),
                                         Sample(-1.0),
                                         Sample(-256.5),
                                         Sample(65793.7),
                                         std::numeric_limits<Sample>::denorm_min()};
    Noise noise(seed);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = noise.integer(0, 3) == 0
                         ? special[static_cast<std::size_t>(
                               noise.integer(0, static_cast<int>(special.size()) - 1))]
                         : static_cast<Sample>(noise.between(-700.0, 700.0));
    }
}

TEST(PixelKernels, PlanesReadFromPixelsEqualTheAccessors) {
    onEveryTarget([](int width, int height) {
        const RgbDiscreteImage image = noiseImage(width, height, 1);
        const FloatImage3 floats(image);
        const RealImage3 reals(image);
        const FloatImage grey(image);
        const RealImage realGrey(image, 0);
        const FloatImage green(image, 2);

        bool equal = true;
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                const auto pixel = rgbAt(image, x, y);
                for (int c = 0; c < 3; ++c) {
                    const int byte = pixel[static_cast<std::size_t>(c)];
                    equal &= floats.plane(c).row(x)[y] == static_cast<float>(byte);
                    equal &= reals.plane(c).row(x)[y] == static_cast<double>(byte);
                }
                equal &= green.row(x)[y] == static_cast<float>(image.green(x, y));
                equal &= grey.row(x)[y] == static_cast<float>(image.value(x, y));
                equal &= realGrey.row(x)[y] == static_cast<double>(image.grey(x, y));
            }
        }
        EXPECT_TRUE(equal);
    });
}

TEST(PixelKernels, EveryLuminanceEqualsTheIntegerFormula) {
    // All pairs of two channels beside a few values of the third.
    RgbDiscreteImage image(256, 256);
    for (const int blue : {0, 1, 127, 128, 254, 255}) {
        for (int x = 0; x < 256; ++x) {
            for (int y = 0; y < 256; ++y) {
                image.setRgb(x, y, x, y, blue);
            }
        }
        for (const KernelTarget target : availableTargets()) {
            const TargetLimit limit(target);
            const FloatImage plane(image);
            bool equal = true;
            for (int x = 0; x < 256; ++x) {
                for (int y = 0; y < 256; ++y) {
                    equal &= plane.row(x)[y] == static_cast<float>(image.value(x, y));
                }
            }
            EXPECT_TRUE(equal) << nameOf(target) << ", " << blue;
        }
    }
}

TEST(PixelKernels, BytesWrittenFromFloatsEqualTheAccessors) {
    onEveryTarget([](int width, int height) {
        FloatImage3 planes(width, height);
        for (int c = 0; c < 3; ++c) {
            fillWithDifficultSamples(planes.plane(c).data(), planes.plane(c).sampleCount(),
                                     static_cast<unsigned>(c));
        }
        RgbDiscreteImage expected(width, height);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                expected.setRgb(x, y, toInt(planes.plane(0).row(x)[y]),
                                toInt(planes.plane(1).row(x)[y]),
                                toInt(planes.plane(2).row(x)[y]));
            }
        }
        RgbDiscreteImage together(width, height);
        RgbDiscreteImage apart = noiseImage(width, height, 2);

        together.setFromFloat3(planes);
        for (int c = 0; c < 3; ++c) {
            apart.setChannelFromFloat(planes.plane(c), c + 1);
        }

        EXPECT_TRUE(test::sameBytes(together, expected));
        EXPECT_TRUE(test::sameBytes(apart, expected));
    });
}

TEST(PixelKernels, BytesWrittenFromDoublesEqualTheAccessors) {
    onEveryTarget([](int width, int height) {
        RealImage3 planes(width, height);
        for (int c = 0; c < 3; ++c) {
            fillWithDifficultSamples(planes.plane(c).data(), planes.plane(c).sampleCount(),
                                     static_cast<unsigned>(c));
        }
        RgbDiscreteImage expected(width, height);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                expected.setRgb(x, y, toInt(planes.plane(0).row(x)[y]),
                                toInt(planes.plane(1).row(x)[y]),
                                toInt(planes.plane(2).row(x)[y]));
            }
        }
        RgbDiscreteImage together(width, height);
        RgbDiscreteImage apart = noiseImage(width, height, 3);

        together.setFromReal3(planes);
        for (int c = 0; c < 3; ++c) {
            apart.setChannelFromReal(planes.plane(c), c + 1);
        }

        EXPECT_TRUE(test::sameBytes(together, expected));
        EXPECT_TRUE(test::sameBytes(apart, expected));
    });
}

TEST(PixelKernels, APlaneWriteLeavesTheOtherChannelsAlone) {
    onEveryTarget([](int width, int height) {
        const RgbDiscreteImage before = noiseImage(width, height, 4);
        RgbDiscreteImage image = noiseImage(width, height, 4);

        image.setChannelFromFloat(FloatImage(width, height, 77.0f), 2);

        bool equal = true;
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                equal &= image.red(x, y) == before.red(x, y);
                equal &= image.green(x, y) == 77;
                equal &= image.blue(x, y) == before.blue(x, y);
            }
        }
        EXPECT_TRUE(equal);
    });
}

}  // namespace
}  // namespace orv
