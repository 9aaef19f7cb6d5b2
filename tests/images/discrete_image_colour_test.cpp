#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "base/rounding.h"
#include "images/image_support.h"

namespace orv {
namespace {

using test::rgbAt;
using Pixel = std::array<int, 3>;

Pixel hsi(double intensity, double hue, double saturation) {
    RgbDiscreteImage image(1, 1);
    image.setHsi(0, 0, intensity, hue, saturation);
    return rgbAt(image, 0, 0);
}

Pixel yiq(double luma, double i, double q) {
    RgbDiscreteImage image(1, 1);
    image.setYiq(0, 0, luma, i, q);
    return rgbAt(image, 0, 0);
}

TEST(SetHsi, WithoutSaturationAllChannelsAreTheIntensity) {
    // 85 / (0.587 x 85 + 0.299 x 85 + 0.114 x 85) may miss 1 by a bit, so 100.5 is used.
    EXPECT_EQ(hsi(100.5, 0.0, 0.0), (Pixel{100, 100, 100}));
    EXPECT_EQ(hsi(100.5, 3.0, 0.0), (Pixel{100, 100, 100}));
    EXPECT_EQ(hsi(100.5, 6.0, 0.0), (Pixel{100, 100, 100}));
}

TEST(SetHsi, IntensityZeroAndAGreyHueGiveBlack) {
    EXPECT_EQ(hsi(0.0, 0.0, 0.0), (Pixel{0, 0, 0}));
    EXPECT_EQ(hsi(0.0, 0.0, 1.0), (Pixel{0, 0, 0}));
}

TEST(SetHsi, ALuminanceOfExactlyZeroDividesByTheLeastInstead) {
    // At hue 0 and this saturation the weighted sum of the three components cancels to 0.
    const double saturation = 9.7087378640776834;

    EXPECT_EQ(hsi(0.0, 0.0, saturation), (Pixel{0, 0, 0}));
    const Pixel bright = hsi(100.0, 0.0, saturation);

    // Red is huge and drawn to 255 from below or exactly; without the rule it would be NaN.
    EXPECT_GE(bright[0], 254);
    EXPECT_EQ(bright[1], 0);
    EXPECT_EQ(bright[2], 0);
}

TEST(SetHsi, TheFirstSectorGoesFromRedToGreen) {
    const double t = 2.0 * (4.0 * std::atan(1.0)) / 3.0;
    const double hue = 0.25 * t;
    const double r = 0.5 * (255.0 * (t - hue) / t - 85.0) + 85.0;
    const double g = 0.5 * (255.0 * hue / t - 85.0) + 85.0;
    const double b = 0.5 * 85.0;
    const double luminance = 0.587 * g + 0.299 * r + 0.114 * b;

    EXPECT_EQ(hsi(50.0, hue, 0.5),
              (Pixel{toInt(50.0 * r / luminance), toInt(50.0 * g / luminance),
                     toInt(50.0 * b / luminance)}));
}

TEST(SetHsi, TheSecondSectorGoesFromGreenToBlue) {
    const double t = 2.0 * (4.0 * std::atan(1.0)) / 3.0;
    const double hue = 1.25 * t;
    const double r = 0.5 * 85.0;
    const double g = 0.5 * (255.0 * (2.0 * t - hue) / t - 85.0) + 85.0;
    const double b = 0.5 * (255.0 * (hue - t) / t - 85.0) + 85.0;
    const double luminance = 0.587 * g + 0.299 * r + 0.114 * b;

    EXPECT_EQ(hsi(50.0, hue, 0.5),
              (Pixel{toInt(50.0 * r / luminance), toInt(50.0 * g / luminance),
                     toInt(50.0 * b / luminance)}));
}

TEST(SetHsi, AComponentAboveFullScaleIsDrawnToTheIntensity) {
    // Pure blue of intensity 200: blue is 200 / 0.114 and red and green are 0.
    const double blue = 200.0 * 255.0 / (0.114 * 255.0);
    const double s = 55.0 / (blue - 200.0);
    const double t = 2.0 * (4.0 * std::atan(1.0)) / 3.0;

    const Pixel pixel = hsi(200.0, 2.0 * t, 1.0);

    EXPECT_EQ(pixel[0], 0);
    EXPECT_NEAR(pixel[2], (1.0 - s) * 200.0 + s * blue, 1.0);
}

TEST(SetHsi, NoChannelExceedsFullScaleForAnIntensityWithinIt) {
    for (int k = 0; k < 60; ++k) {
        for (const double saturation : {0.2, 0.7, 1.0}) {
            const double hue = 0.1 * k;
            RgbDiscreteImage image(1, 1);
            image.setHsi(0, 0, 180.0, hue, saturation);

            // A wrapped byte would come out far below the intensity in the leading channel.
            const Pixel pixel = rgbAt(image, 0, 0);
            EXPECT_GE(std::max({pixel[0], pixel[1], pixel[2]}), 179);
        }
    }
}

TEST(SetYiq, GreyLumaGivesGrey) {
    EXPECT_EQ(yiq(77.5, 0.0, 0.0), (Pixel{77, 77, 77}));
}

TEST(SetYiq, ChromaIsWeightedAndTruncated) {
    EXPECT_EQ(yiq(100.0, 10.0, 20.0), (Pixel{toInt(0.956 * 10.0 + 0.621 * 20.0 + 100.0),
                                             toInt(100.0 - 0.273 * 10.0 - 0.647 * 20.0),
                                             toInt(100.0 - 1.104 * 10.0 + 1.701 * 20.0)}));
}

TEST(SetYiq, ComponentsAreClampedToTheByteRange) {
    EXPECT_EQ(yiq(300.0, 0.0, 0.0), (Pixel{255, 255, 255}));
    EXPECT_EQ(yiq(-3.0, 0.0, 0.0), (Pixel{0, 0, 0}));
}

TEST(Quirk, HsiThirdSector) {
    const double pi = 4.0 * std::atan(1.0);
    const double t = 2.0 * pi / 3.0;
    const double hue = 2.5 * t;
    const double r = 0.5 * (255.0 * (hue - 2.0 * t) / t - 85.0) + 85.0;
    const double g = 0.5 * 85.0;
    const auto pixelWith = [&](double b) {
        const double luminance = 0.587 * g + 0.299 * r + 0.114 * b;
        return Pixel{toInt(50.0 * r / luminance), toInt(50.0 * g / luminance),
                     toInt(50.0 * b / luminance)};
    };
    const double slope = 0.5 * (255.0 * (2.0 * pi - hue) / t - 85.0);

    const Pixel pixel = hsi(50.0, hue, 0.5);

    EXPECT_EQ(pixel, pixelWith(85.0 - slope));
    EXPECT_NE(pixel, pixelWith(slope + 85.0));
}

}  // namespace
}  // namespace orv
