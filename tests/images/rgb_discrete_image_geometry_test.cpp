#include <gtest/gtest.h>

#include <array>

#include "images/image_support.h"

namespace orv {
namespace {

using test::noiseImage;
using test::rgbAt;
using Pixel = std::array<int, 3>;

constexpr int kWidth = 7;
constexpr int kHeight = 5;

/// Checks sizes and that result(x, y) is image at from(x, y).
template <class From>
void expectMoved(const DiscreteImage& result, int width, int height, const DiscreteImage& image,
                 From from) {
    ASSERT_EQ(result.width(), width);
    ASSERT_EQ(result.height(), height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            const std::array<int, 2> source = from(x, y);
            EXPECT_EQ(rgbAt(result, x, y), rgbAt(image, source[0], source[1]))
                << x << ", " << y;
        }
    }
}

TEST(RgbGeometry, DecimationTakesEveryNthPixel) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 1);

    expectMoved(*image.decimated(2), 3, 2, image, [](int x, int y) {
        return std::array{2 * x, 2 * y};
    });
    EXPECT_EQ(image.decimated(6)->height(), 0);
}

TEST(RgbGeometry, InterleavedZoomFillsTheRestOfEachBlock) {
    const RgbDiscreteImage image = noiseImage(2, 3, 2);

    const auto zoomed = image.interleavedZoom(3, 256 + 9, 8, 7);

    ASSERT_EQ(zoomed->width(), 6);
    ASSERT_EQ(zoomed->height(), 9);
    for (int x = 0; x < 6; ++x) {
        for (int y = 0; y < 9; ++y) {
            const bool corner = x % 3 == 0 && y % 3 == 0;
            EXPECT_EQ(rgbAt(*zoomed, x, y),
                      corner ? rgbAt(image, x / 3, y / 3) : (Pixel{9, 8, 7}));
        }
    }
}

TEST(RgbGeometry, ReplicatedZoomRepeatsEachPixel) {
    const RgbDiscreteImage image = noiseImage(2, 3, 3);

    expectMoved(*image.replicatedZoom(3), 6, 9, image, [](int x, int y) {
        return std::array{x / 3, y / 3};
    });
}

TEST(RgbGeometry, DoublingLeavesZerosBetweenPixels) {
    RgbDiscreteImage image = noiseImage(3, 2, 4);

    const auto doubled = image.doubled();

    ASSERT_EQ(doubled->width(), 5);
    ASSERT_EQ(doubled->height(), 3);
    for (int x = 0; x < 5; ++x) {
        for (int y = 0; y < 3; ++y) {
            const bool even = x % 2 == 0 && y % 2 == 0;
            EXPECT_EQ(rgbAt(*doubled, x, y),
                      even ? rgbAt(image, x / 2, y / 2) : (Pixel{0, 0, 0}));
        }
    }
}

TEST(RgbGeometry, MirrorsAndTurnsMoveWholePixels) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 5);
    const int lastX = kWidth - 1;
    const int lastY = kHeight - 1;

    expectMoved(*image.mirroredX(), kWidth, kHeight, image, [&](int x, int y) {
        return std::array{lastX - x, y};
    });
    expectMoved(*image.mirroredY(), kWidth, kHeight, image, [&](int x, int y) {
        return std::array{x, lastY - y};
    });
    expectMoved(*image.rotated180(), kWidth, kHeight, image, [&](int x, int y) {
        return std::array{lastX - x, lastY - y};
    });
    expectMoved(*image.rotatedCcw(), kHeight, kWidth, image, [&](int x, int y) {
        return std::array{lastX - y, x};
    });
    expectMoved(*image.rotatedCw(), kHeight, kWidth, image, [&](int x, int y) {
        return std::array{y, lastY - x};
    });
}

TEST(RgbGeometry, ACounterClockwiseTurnBringsTheTopRightToTheTopLeft) {
    RgbDiscreteImage image(3, 2);
    image.setRgb(2, 0, 1, 2, 3);

    EXPECT_EQ(rgbAt(*image.rotatedCcw(), 0, 0), (Pixel{1, 2, 3}));
    EXPECT_EQ(rgbAt(*image.rotatedCw(), 1, 2), (Pixel{1, 2, 3}));
}

TEST(RgbGeometry, ASubImageIsCutAtTheBorderAndHasNoOrigin) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 6);

    const auto part = image.subImage(5, 1, 10, 3);

    expectMoved(*part, 2, 3, image, [](int x, int y) { return std::array{5 + x, 1 + y}; });
    EXPECT_EQ(part->getOriginX(), 0);
}

TEST(RgbGeometry, ASubImageOfNothingIsNull) {
    const RgbDiscreteImage image(kWidth, kHeight);

    EXPECT_EQ(image.subImage(kWidth, 0, 2, 2), nullptr);
    EXPECT_EQ(image.subImage(0, kHeight, 2, 2), nullptr);
    EXPECT_EQ(image.subImage(0, 0, 0, 2), nullptr);
}

TEST(RgbGeometry, ASubImageByCornersKnowsItsOrigin) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 7);

    const auto part = image.subImageCorners(2, 1, 4, 3);

    expectMoved(*part, 3, 3, image, [](int x, int y) { return std::array{2 + x, 1 + y}; });
    EXPECT_EQ(part->getOriginX(), 2);
    EXPECT_EQ(part->getOriginY(), 1);
}

TEST(RgbGeometry, AThumbnailStepsInWholePixels) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 8);

    expectMoved(*image.thumbnail(3), 3, 3, image, [](int x, int y) {
        return std::array{2 * x, y};
    });
    expectMoved(*image.thumbnail(6), 6, 5, image, [](int x, int y) {
        return std::array{x, y};
    });
}

TEST(RgbGeometry, AThumbnailLargerThanTheImageIsTheImage) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 9);

    expectMoved(*image.thumbnail(100), kWidth, kHeight, image, [](int x, int y) {
        return std::array{x, y};
    });
}

TEST(RgbGeometry, ResizingTakesTheNearestSampleBelow) {
    const RgbDiscreteImage image = noiseImage(kWidth, kHeight, 10);

    expectMoved(*image.resized(1.5, 0.7), 10, 3, image, [](int x, int y) {
        return std::array{static_cast<int>(x / 1.5), static_cast<int>(y / 0.7)};
    });
}

}  // namespace
}  // namespace orv
